#pragma once
// The process entry's command-line rules, free of any window system.

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quarrydex {

class Launcher {
public:
    explicit Launcher(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}
    Launcher(int argc, char** argv);

    // The element after the first one equal to `flag` (argument 0 included); none when
    // the flag is absent or last. A value beginning with "--" is returned as it is.
    std::optional<std::string> argument(const std::string& flag) const;
    // True when some argument is exactly `flag`.
    bool has(const std::string& flag) const;

    const std::vector<std::string>& arguments() const { return arguments_; }
    // When the process entry made this launcher: the start of start-up measurements.
    std::chrono::steady_clock::time_point startedAt() const { return startedAt_; }

    // Starts the windowed program and returns its exit status. Kept out of this library so
    // that the command-line rules and the self-test never link a window system.
    using WindowedStart = int (*)(const Launcher& launcher);

    // The process entry: "--selftest" anywhere prints the self-test report and returns 1
    // if a check failed, else 0. Otherwise starts the program through `startWindow`.
    int run(WindowedStart startWindow = nullptr) const;
    // Loads the bundled library and samples, runs every check and prints the report
    // followed by one newline; the exit status is 1 if any check failed.
    static int runSelfTest();

private:
    std::vector<std::string> arguments_;
    std::chrono::steady_clock::time_point startedAt_ = std::chrono::steady_clock::now();
};

} // namespace quarrydex
