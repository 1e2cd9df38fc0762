// A main() for the harnesses when they are not built with libFuzzer (GCC builds, CTest):
// runs the harness once on every file named on the command line, and on every file
// inside every folder named there. Arguments starting with "-" are libFuzzer flags and
// are ignored, so the same command line works with both builds.

#include "fuzz_support.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

bool runOne(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument.starts_with("-")) {
            continue;
        }
        std::error_code ec;
        if (fs::is_directory(argument, ec)) {
            for (const auto& entry : fs::recursive_directory_iterator(argument, ec)) {
                if (entry.is_regular_file()) {
                    files.push_back(entry.path());
                }
            }
        } else {
            files.emplace_back(argument);
        }
    }
    std::sort(files.begin(), files.end());
    int failures = 0;
    for (const fs::path& file : files) {
        failures += runOne(file) ? 0 : 1;
    }
    std::printf("ran %zu inputs\n", files.size());
    return failures == 0 ? 0 : 1;
}
