#pragma once
// The process entry's command-line rules, free of any window system.

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

private:
    std::vector<std::string> arguments_;
};

} // namespace quarrydex
