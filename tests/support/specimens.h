#pragma once
// Small hand-made species for tests, valid under every library rule unless a test
// changes a field on purpose.

#include "library/specimen.h"

#include <string>
#include <vector>

namespace quarrydex::test {

inline Specimen makeSpecimen(const std::string& id, const std::string& name) {
    Specimen s;
    s.id = id;
    s.name = name;
    s.category = SpecimenCategory::mineral;
    s.group = "Test group";
    s.hardnessMin = 3;
    s.hardnessMax = 3;
    s.specificGravity = "2.7";
    s.luster = "Vitreous";
    s.streak = "White";
    s.colors = {"white"};
    s.colorHex = {"#F0F0F0"};
    s.summary = "A species made up for a test case.";
    s.history = "Named for nothing at all; it exists only inside the tests.";
    s.localities = {"Nowhere"};
    s.lookAlikes = {{"Other", "Scratch it with a coin to tell."}};
    s.care = "Keep dry.";
    s.uses = "Testing.";
    s.habits = {"massive"};
    return s;
}

// Species "s0", "s1"... named "Species 0", "Species 1"...
inline std::vector<Specimen> numberedSpecimens(int count) {
    std::vector<Specimen> list;
    for (int i = 0; i < count; ++i) {
        list.push_back(makeSpecimen("s" + std::to_string(i), "Species " + std::to_string(i)));
    }
    return list;
}

} // namespace quarrydex::test
