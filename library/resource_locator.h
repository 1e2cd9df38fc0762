#pragma once
// Finds the program's resources (the library file, the sample folder) relative to the
// running executable, so the same binary works from the build tree and once installed:
// <prefix>/bin/quarrydex reads <prefix>/share/quarrydex.

#include <filesystem>
#include <optional>
#include <string>

namespace quarrydex {

class ResourceLocator {
public:
    // The program's own resource folder: $QUARRYDEX_RESOURCES when set, else
    // <folder of the executable>/../share/quarrydex.
    static std::filesystem::path resourceFolder();

    // "<name>.<extension>" in `folder`; otherwise in each nested resource package
    // ("*.bundle" folders inside it) in name order; none when nobody has it.
    static std::optional<std::filesystem::path>
    url(const std::string& name, const std::string& extension,
        const std::filesystem::path& folder = resourceFolder());
};

} // namespace quarrydex
