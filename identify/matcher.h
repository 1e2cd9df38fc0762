#pragma once
// Ranks every library species for one stone from the photo's centre colour (a weak
// clue) and the guided answers (the strong ones). A pure function of its inputs: no
// state, no I/O, safe from any thread.

#include "identify/answers.h"
#include "identify/question.h"
#include "identify/rgb.h"
#include "library/specimen.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quarrydex {

enum class ConfidenceLevel { strong, likely, possible, roughGuess };

std::string_view rawValue(ConfidenceLevel level);
std::string_view title(ConfidenceLevel level);
std::string_view explanation(ConfidenceLevel level);
std::optional<ConfidenceLevel> confidenceLevelFromRaw(std::string_view raw);

struct Candidate {
    Specimen specimen;
    double confidence = 0; // share of belief, 0...1; all species together add up to 1
    std::vector<std::string> fits;
    std::vector<std::string> misfits;

    bool operator==(const Candidate&) const = default;
    // Percent shown to the user: never above 95, rounded half away from zero.
    int displayPercent() const;
};

struct IdentifyResult {
    std::vector<Candidate> candidates; // best first
    ConfidenceLevel level = ConfidenceLevel::roughGuess;
    int evidence = 0; // number of questions answered
    bool usedPhotoColor = false;
    bool nothingFitsWell = false;
    std::optional<Question> suggestedNext;
};

struct AnswerScore {
    double score = 1.0;
    std::vector<std::string> fits;
    std::vector<std::string> misfits;
};

class Matcher {
public:
    double colorWeight = 4.0; // exponent applied to the colour similarity

    // `limit` must not be negative.
    IdentifyResult identify(std::optional<RGB> color, const Answers& answers,
                            const std::vector<Specimen>& specimens, int limit) const;

    static AnswerScore answerScore(const Specimen& specimen, const Answers& answers);
    static double colorSimilarity(const RGB& color, const Specimen& specimen);
    static double distance(const RGB& a, const RGB& b);
    static ConfidenceLevel level(double top, double second, int answered);
    // The unanswered question expected to leave the least uncertainty; none when all
    // eight are answered. `probabilities` maps species ids to their current share.
    static std::optional<Question>
    suggestNext(const Answers& answers, const std::vector<Specimen>& specimens,
                const std::unordered_map<std::string, double>& probabilities);
};

} // namespace quarrydex
