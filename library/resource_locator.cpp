#include "library/resource_locator.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace quarrydex {
namespace fs = std::filesystem;

fs::path ResourceLocator::resourceFolder() {
    if (const char* override = std::getenv("QUARRYDEX_RESOURCES"); override && *override) {
        return fs::path(override);
    }
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec) {
        return fs::current_path(ec) / "share" / "quarrydex";
    }
    return (exe.parent_path().parent_path() / "share" / "quarrydex").lexically_normal();
}

std::optional<fs::path> ResourceLocator::url(const std::string& name, const std::string& extension,
                                             const fs::path& folder) {
    std::error_code ec;
    const std::string file = name + "." + extension;
    if (fs::is_regular_file(folder / file, ec)) {
        return folder / file;
    }
    // Nested packages, in a stable listing order.
    std::vector<fs::path> packages;
    for (const auto& entry : fs::directory_iterator(folder, ec)) {
        if (entry.path().extension() == ".bundle" && entry.is_directory(ec)) {
            packages.push_back(entry.path());
        }
    }
    std::sort(packages.begin(), packages.end());
    for (const auto& package : packages) {
        if (fs::is_regular_file(package / file, ec)) {
            return package / file;
        }
    }
    return std::nullopt;
}

} // namespace quarrydex
