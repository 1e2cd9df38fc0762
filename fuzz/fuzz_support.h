#pragma once
// Shared by the fuzz harnesses: a scratch folder for the ones that write files, and the
// check that stops a run when an invariant breaks (so libFuzzer keeps the input).

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

// The entry point every harness defines; libFuzzer calls it, or file_runner.cpp does.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace quarrydex::fuzz {

inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// A fresh, empty folder for one input: under /dev/shm when there is one (memory, so the
// store's fsyncs cost nothing), else under the system's temporary folder. The folder of
// the previous input is removed first. Created once per process, removed at exit.
std::filesystem::path freshFolder();

// Aborts with `what` on standard error when `condition` is false.
void require(bool condition, const char* what);

} // namespace quarrydex::fuzz
