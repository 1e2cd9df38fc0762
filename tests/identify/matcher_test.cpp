#include "identify/matcher.h"
#include "support/specimens.h"

#include <gtest/gtest.h>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

namespace {

// A tiny library with clear differences between its members.
std::vector<Specimen> sampleLibrary() {
    Specimen calcite = makeSpecimen("calcite", "Calcite");
    calcite.fizzes = true;
    calcite.habits = {"rhombohedral"};
    Specimen quartz = makeSpecimen("quartz", "Quartz");
    quartz.hardnessMin = quartz.hardnessMax = 7;
    quartz.habits = {"prismatic"};
    Specimen magnetite = makeSpecimen("magnetite", "Magnetite");
    magnetite.magnetic = true;
    magnetite.colors = {"black"};
    magnetite.colorHex = {"#202020"};
    magnetite.luster = "Metallic";
    magnetite.streak = "Black";
    magnetite.specificGravity = "5.2";
    magnetite.hardnessMin = 5.5;
    magnetite.hardnessMax = 6.5;
    Specimen talc = makeSpecimen("talc", "Talc");
    talc.hardnessMin = talc.hardnessMax = 1;
    talc.luster = "Pearly";
    return {calcite, quartz, magnetite, talc};
}

} // namespace

TEST(ColorScience, similarity_has_a_floor_and_a_neutral_value_without_reference_colours) {
    Specimen s = makeSpecimen("x", "X");
    s.colorHex = {"#000000"};
    EXPECT_DOUBLE_EQ(Matcher::colorSimilarity({1, 1, 1}, s), 0.05);
    s.colorHex = {"nonsense", "#FFFFFF"};
    EXPECT_DOUBLE_EQ(Matcher::colorSimilarity({1, 1, 1}, s), 1.0);
    s.colorHex = {"nonsense"};
    EXPECT_DOUBLE_EQ(Matcher::colorSimilarity({1, 1, 1}, s), 0.5);
}

TEST(AnswerScoring, fit_and_misfit_lines_use_the_species_texts) {
    Specimen s = sampleLibrary()[2]; // magnetite
    Answers a;
    a.color = ColorFamily::red;
    a.luster = LusterAnswer::metallic;
    a.scratch = ScratchAnswer::coin;
    a.heft = HeftAnswer::heavy;
    a.magnet = MagnetAnswer::none;
    a.fizz = FizzAnswer::none;
    AnswerScore score = Matcher::answerScore(s, a);
    EXPECT_EQ(score.fits,
              (std::vector<std::string>{"Luster fits (metallic)", "Weight fits (SG 5.2)",
                                        "No fizz, as expected"}));
    EXPECT_EQ(score.misfits,
              (std::vector<std::string>{"Usually black", "Hardness is 5.5\u20136.5 Mohs",
                                        "Should attract a magnet"}));
    EXPECT_DOUBLE_EQ(score.score, 0.3 * 0.1 * 0.1);

    Specimen noGravity = makeSpecimen("x", "X");
    noGravity.specificGravity.reset();
    noGravity.colors = {"a", "b", "c", "d"};
    Answers b;
    b.color = ColorFamily::blue;
    b.heft = HeftAnswer::light;
    AnswerScore other = Matcher::answerScore(noGravity, b);
    EXPECT_EQ(other.fits, (std::vector<std::string>{"Weight fits (SG ?)"}));
    EXPECT_EQ(other.misfits, (std::vector<std::string>{"Usually a, b, c"}));
}

TEST(Identification, no_clues_make_every_species_equally_likely_in_name_order) {
    auto lib = sampleLibrary();
    IdentifyResult r = Matcher().identify(std::nullopt, {}, lib, 10);
    ASSERT_EQ(r.candidates.size(), 4u);
    std::vector<std::string> names;
    for (const auto& c : r.candidates) {
        EXPECT_DOUBLE_EQ(c.confidence, 0.25);
        names.push_back(c.specimen.name);
    }
    // The library lists quartz before magnetite: equal shares go by name, not input order.
    EXPECT_EQ(names, (std::vector<std::string>{"Calcite", "Magnetite", "Quartz", "Talc"}));
    EXPECT_EQ(r.level, ConfidenceLevel::roughGuess);
    EXPECT_TRUE(r.suggestedNext);
    EXPECT_FALSE(r.nothingFitsWell);
}

TEST(Identification, limit_cuts_the_list_and_contradictions_set_nothing_fits_well) {
    auto lib = sampleLibrary();
    EXPECT_EQ(Matcher().identify(std::nullopt, {}, lib, 2).candidates.size(), 2u);
    IdentifyResult none = Matcher().identify(std::nullopt, {}, lib, 0);
    EXPECT_TRUE(none.candidates.empty());
    EXPECT_TRUE(none.suggestedNext) << "the suggestion still weighs the whole library";

    // Contradicting answers set nothingFitsWell.
    Answers a;
    a.magnet = MagnetAnswer::attracts;
    a.fizz = FizzAnswer::fizzes;
    EXPECT_TRUE(Matcher().identify(std::nullopt, a, lib, 8).nothingFitsWell);
    a.fizz.reset();
    EXPECT_FALSE(Matcher().identify(std::nullopt, a, lib, 8).nothingFitsWell);
}

TEST(Identification, suggestions_skip_answered_questions_and_stop_when_all_are_answered) {
    auto lib = sampleLibrary();
    Answers a;
    for (std::size_t i = 0; i < allQuestions().size(); ++i) {
        IdentifyResult r = Matcher().identify(std::nullopt, a, lib, 8);
        ASSERT_TRUE(r.suggestedNext) << i;
        EXPECT_FALSE(isAnswered(*r.suggestedNext, a));
        Question q = *r.suggestedNext;
        ASSERT_TRUE(setAnswerRawValue(q, a, options(q)[0].rawValue));
    }
    EXPECT_EQ(a.answeredCount(), 8);
    EXPECT_FALSE(Matcher().identify(std::nullopt, a, lib, 8).suggestedNext);
}

TEST(Identification, suggestion_picks_the_question_that_splits_the_field) {
    // Four species that differ only by magnetism: the magnet test settles it.
    std::vector<Specimen> lib;
    for (int i = 0; i < 4; ++i) {
        Specimen s = makeSpecimen("s" + std::to_string(i), "S" + std::to_string(i));
        s.magnetic = i % 2;
        lib.push_back(s);
    }
    std::unordered_map<std::string, double> p;
    for (const auto& s : lib) {
        p[s.id] = 0.25;
    }
    EXPECT_EQ(Matcher::suggestNext({}, lib, p), Question::magnet);
    Answers a;
    a.magnet = MagnetAnswer::none;
    // Nothing else separates them: every question costs the same, the first unanswered wins.
    EXPECT_EQ(Matcher::suggestNext(a, lib, p), Question::color);
}

TEST(ConfidenceLevels, thresholds_are_checked_in_order_and_percentages_cap_at_95) {
    EXPECT_EQ(Matcher::level(0.55, 0.275, 3), ConfidenceLevel::strong);
    EXPECT_EQ(Matcher::level(0.55, 0.28, 3), ConfidenceLevel::likely);
    EXPECT_EQ(Matcher::level(0.9, 0.0, 2), ConfidenceLevel::likely);
    EXPECT_EQ(Matcher::level(0.34, 0.0, 2), ConfidenceLevel::possible);
    EXPECT_EQ(Matcher::level(0.99, 0.0, 1), ConfidenceLevel::possible);
    EXPECT_EQ(Matcher::level(0.99, 0.0, 0), ConfidenceLevel::roughGuess);
    EXPECT_EQ(confidenceLevelFromRaw("roughGuess"), ConfidenceLevel::roughGuess);
    EXPECT_EQ(title(ConfidenceLevel::likely), "Likely match");

    // Shown percentages cap at 95 and round half away from zero.
    Candidate c{makeSpecimen("x", "X"), 0.99, {}, {}};
    EXPECT_EQ(c.displayPercent(), 95);
    c.confidence = 0.004;
    EXPECT_EQ(c.displayPercent(), 0);
    c.confidence = 0.125;
    EXPECT_EQ(c.displayPercent(), 13);
    c.confidence = 0.955;
    EXPECT_EQ(c.displayPercent(), 95);
}
