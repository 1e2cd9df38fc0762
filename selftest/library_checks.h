#pragma once
// The rules a library file must meet, and the textbook-answer consistency measure.
// The built-in self-test reports them; the data tests enforce them on the shipped file.

#include "identify/answers.h"
#include "library/specimen.h"
#include "library/specimen_library.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

class LibraryChecks {
public:
    static const std::array<std::string_view, 12>& months();

    // Each broken content rule of one species as "<id>: <label>"; empty when valid.
    static std::vector<std::string> problems(const Specimen& s);
    // Ids of species marked as fizzing that are neither carbonates nor calcite fossils.
    static std::vector<std::string> fizzOffenders(const std::vector<Specimen>& specimens);
    // Ids that break "magnetic exactly for magnetite and the meteorites".
    static std::vector<std::string> magneticOffenders(const std::vector<Specimen>& specimens);

    // The answers a textbook gives for the species' eight home tests.
    static Answers profile(const Specimen& s);

    struct Consistency {
        int total = 0;
        int first = 0;
        int inTop3 = 0;
        std::vector<std::string> missed; // ids not in their own top 3
    };
    // Identifies every species from its textbook answers over the whole library.
    static Consistency selfConsistency(const SpecimenLibrary& library);
};

} // namespace quarrydex
