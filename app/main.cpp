#include "app/launcher.h"
#include "library/specimen_library.h"

#include <iostream>

int main(int argc, char** argv) {
    quarrydex::Launcher launcher(argc, argv);
    auto library = quarrydex::SpecimenLibrary::bundled();
    if (library.loadError()) {
        std::cerr << *library.loadError() << "\n";
        return 1;
    }
    std::cout << "Quarrydex: " << library.specimens().size() << " species in the library.\n";
    return 0;
}
