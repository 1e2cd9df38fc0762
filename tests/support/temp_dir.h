#pragma once
// Shared helpers for the tests: a private temporary folder per test, fixture copying
// and whole-file reads.

#include <filesystem>
#include <string>

namespace quarrydex::test {

// A fresh folder under the system temporary folder, removed with everything in it
// when the object goes away.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// tests/data/<name>
std::filesystem::path fixture(const std::string& name);
// Copies tests/data/<name> into `folder` (fixtures are never changed in place).
std::filesystem::path copyFixture(const std::string& name, const std::filesystem::path& folder);

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);

} // namespace quarrydex::test
