#include "identify/answers.h"
#include "identify/question.h"
#include "support/specimens.h"

#include <gtest/gtest.h>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

TEST(AnswerMatching, hardness_boundaries_count_as_overlap_and_hard_stones_leave_no_streak) {
    Specimen s = makeSpecimen("x", "X");
    s.hardnessMin = s.hardnessMax = 2.5;
    EXPECT_TRUE(matches(ScratchAnswer::fingernail, s));
    EXPECT_TRUE(matches(ScratchAnswer::coin, s));
    EXPECT_FALSE(matches(ScratchAnswer::steel, s));
    s.hardnessMin = 6;
    s.hardnessMax = 7;
    EXPECT_TRUE(matches(ScratchAnswer::scratchesGlass, s));
    EXPECT_FALSE(matches(ScratchAnswer::steel, s));

    // Streak "none" fits a "None" text or anything harder than the tile.
    s.streak = "None";
    EXPECT_TRUE(matches(StreakAnswer::none, s));
    s.streak = "White";
    s.hardnessMax = 6.4;
    EXPECT_FALSE(matches(StreakAnswer::none, s));
    s.hardnessMax = 6.5;
    EXPECT_TRUE(matches(StreakAnswer::none, s));
    s.streak = "Reddish brown";
    EXPECT_TRUE(matches(StreakAnswer::redBrown, s));
    EXPECT_TRUE(matches(StreakAnswer::yellowBrown, s));
    EXPECT_FALSE(matches(StreakAnswer::white, s));
}

TEST(AnswerMatching, colour_keywords_overlap_between_families_on_purpose) {
    Specimen s = makeSpecimen("x", "X");
    s.colors = {"Peach"};
    EXPECT_EQ(families(s), (std::set{ColorFamily::pink, ColorFamily::orange}));
    s.colors = {"salt and pepper"};
    EXPECT_EQ(families(s), (std::set{ColorFamily::multicolor}));
    s.colors = {"green with black bands"};
    EXPECT_EQ(families(s),
              (std::set{ColorFamily::black, ColorFamily::green, ColorFamily::multicolor}));
    s.colors = {"teal"};
    EXPECT_TRUE(matches(ColorFamily::green, s));
    EXPECT_TRUE(matches(ColorFamily::blue, s));
    s.colors = {"ochre"};
    EXPECT_TRUE(families(s).empty());
    EXPECT_FALSE(matches(ColorFamily::brown, s));
}

TEST(AnswerMatching, luster_and_habit_rules) {
    Specimen s = makeSpecimen("x", "X");
    s.luster = "Granular";
    EXPECT_TRUE(matches(LusterAnswer::glassy, s));
    EXPECT_TRUE(matches(LusterAnswer::dull, s));
    EXPECT_FALSE(matches(LusterAnswer::metallic, s));
    s.habits = {"Cubic"};
    EXPECT_FALSE(matches(HabitAnswer::cubes, s)) << "tags are case-sensitive";
    s.habits = {"massive", "dendritic"};
    EXPECT_TRUE(matches(HabitAnswer::metalLump, s));
    EXPECT_TRUE(matches(HabitAnswer::noShape, s));
    EXPECT_TRUE(allHabitTags().contains("botryoidal"));
    EXPECT_EQ(allHabitTags().size(), 19u);
}

TEST(AnswerMatching, heft_follows_the_gravity_range_and_unknown_gravity_fits_everything) {
    Specimen s = makeSpecimen("x", "X");
    s.specificGravity = "below 1.0";
    EXPECT_TRUE(matches(HeftAnswer::light, s));
    EXPECT_FALSE(matches(HeftAnswer::normal, s));
    s.specificGravity = "2.0–2.3";
    EXPECT_TRUE(matches(HeftAnswer::light, s));
    EXPECT_TRUE(matches(HeftAnswer::normal, s));
    EXPECT_FALSE(matches(HeftAnswer::heavy, s));
    s.specificGravity = "4.0–7.6";
    EXPECT_TRUE(matches(HeftAnswer::normal, s));
    EXPECT_TRUE(matches(HeftAnswer::heavy, s));
    s.specificGravity = "variable";
    for (const auto& c : allCases<HeftAnswer>()) {
        EXPECT_TRUE(matches(c.value, s));
    }
}

TEST(AnswersValue, summary_lines_follow_field_order_with_fixed_labels) {
    Answers a;
    EXPECT_TRUE(a.summary().empty());
    a.heft = HeftAnswer::heavy;
    a.magnet = MagnetAnswer::attracts;
    a.color = ColorFamily::gray;
    a.habit = HabitAnswer::cubes;
    EXPECT_EQ(a.answeredCount(), 4);
    EXPECT_EQ(a.summary(), (std::vector<std::string>{
                               "Color: Gray or silver", "Shape: Cubes or square corners",
                               "Magnet: A magnet sticks or pulls", "Weight: Surprisingly heavy"}));
}
