#pragma once
// Shared helpers for the tests: a private temporary folder per test, fixture copying,
// whole-file reads and writes, and environment variables set for one scope.

#include <filesystem>
#include <optional>
#include <set>
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

// Sets (or, given nullopt, unsets) an environment variable until the object goes away, then
// restores the old value. TZ changes take effect at once.
class ScopedEnv {
public:
    ScopedEnv(std::string name, const std::optional<std::string>& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    static void apply(const std::string& name, const std::optional<std::string>& value);
    std::string name_;
    std::optional<std::string> saved_;
};

// tests/data/<name>
std::filesystem::path fixture(const std::string& name);

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);
// The names of the entries directly inside `folder`.
std::set<std::string> namesIn(const std::filesystem::path& folder);

} // namespace quarrydex::test
