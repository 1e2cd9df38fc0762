#pragma once
// Small hand-made species for tests, valid under every library rule unless a test
// changes a field on purpose.

#include "library/specimen.h"

#include <string>

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

} // namespace quarrydex::test
