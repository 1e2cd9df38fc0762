#include "app/launcher.h"

#include <algorithm>

namespace quarrydex {

Launcher::Launcher(int argc, char** argv) : arguments_(argv, argv + argc) {}

std::optional<std::string> Launcher::argument(const std::string& flag) const {
    auto it = std::find(arguments_.begin(), arguments_.end(), flag);
    if (it == arguments_.end() || std::next(it) == arguments_.end()) {
        return std::nullopt;
    }
    return *std::next(it);
}

bool Launcher::has(const std::string& flag) const {
    return std::find(arguments_.begin(), arguments_.end(), flag) != arguments_.end();
}

} // namespace quarrydex
