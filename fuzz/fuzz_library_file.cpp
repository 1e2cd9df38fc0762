// The library file ("specimens.json"): decoding, and for a file that decodes, what the
// screens and the matcher then do with it.

#include "fuzz_support.h"
#include "identify/matcher.h"
#include "library/specimen.h"
#include "library/specimen_library.h"

#include <nlohmann/json.hpp>

using namespace quarrydex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Result<std::vector<Specimen>> decoded = decodeSpecimens(fuzz::bytesOf(data, size));
    if (!decoded) {
        fuzz::require(!decoded.error().empty(), "a refused library file has a reason");
        return 0;
    }
    // What decodes must encode and decode to the same records.
    nlohmann::json again = nlohmann::json::array();
    for (const Specimen& s : *decoded) {
        again.push_back(toJson(s));
    }
    Result<std::vector<Specimen>> redecoded = decodeSpecimens(again.dump());
    fuzz::require(redecoded && *redecoded == *decoded, "library records survive a round trip");

    SpecimenLibrary library(std::move(decoded).value());
    (void)library.search("a");
    (void)library.specimenOfTheDay();
    for (const Specimen& s : library.specimens()) {
        (void)s.hardnessText();
        (void)s.gravityRange();
    }
    Matcher matcher;
    Answers answers;
    answers.luster = LusterAnswer::glassy;
    answers.fizz = FizzAnswer::fizzes;
    (void)matcher.identify(RGB{0.5, 0.4, 0.3}, answers, library.specimens(), 8);
    (void)matcher.identify(std::nullopt, Answers{}, library.specimens(), 8);
    return 0;
}
