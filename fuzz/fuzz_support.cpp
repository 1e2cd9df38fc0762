#include "fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace quarrydex::fuzz {
namespace fs = std::filesystem;

namespace {

// Made on first use and removed with everything in it when the process exits.
struct ScratchFolder {
    ScratchFolder() {
        std::error_code ec;
        fs::path parent =
            fs::is_directory("/dev/shm", ec) ? fs::path("/dev/shm") : fs::temp_directory_path(ec);
        std::string pattern = (parent / "quarrydex-fuzz-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            std::perror("quarrydex fuzz: no scratch folder");
            std::abort();
        }
        path = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    fs::path path;
};

const fs::path& baseFolder() {
    static const ScratchFolder folder;
    return folder.path;
}

} // namespace

fs::path freshFolder() {
    fs::path folder = baseFolder() / "input";
    std::error_code ec;
    fs::remove_all(folder, ec);
    fs::create_directories(folder, ec);
    require(!ec, "the scratch folder could not be made");
    return folder;
}

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "quarrydex fuzz: invariant broken: %s\n", what);
        std::abort();
    }
}

} // namespace quarrydex::fuzz
