#include "app/launcher.h"

#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "selftest/self_test.h"

#include <algorithm>
#include <iostream>

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

int Launcher::runSelfTest() {
    SpecimenLibrary library = SpecimenLibrary::bundled();
    SelfTest test(library, SampleSet::bundled());
    std::cout << test.runAll() << "\n" << std::flush;
    ImageTools::shutdown();
    return test.failed() > 0 ? 1 : 0;
}

int Launcher::run(WindowedStart startWindow) const {
    if (has("--selftest")) {
        return runSelfTest();
    }
    if (startWindow) {
        return startWindow(*this);
    }
    std::cerr << "The Quarrydex window is not available in this build. Run with --selftest to "
                 "check the library, the identifier, backups and the sample collection.\n";
    return 2;
}

} // namespace quarrydex
