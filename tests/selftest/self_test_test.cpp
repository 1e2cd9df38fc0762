#include "selftest/library_checks.h"
#include "selftest/self_test.h"
#include "support/specimens.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

namespace {
std::vector<std::string> reportLines(const std::string& report) {
    std::vector<std::string> out;
    std::istringstream in(report);
    for (std::string line; std::getline(in, line);) {
        out.push_back(line);
    }
    return out;
}
} // namespace

TEST(SelfTestReport, check_and_info_lines_have_their_fixed_layout) {
    SpecimenLibrary library;
    SelfTest t(library, std::nullopt);
    t.begin("Section");
    t.check(true, "holds", [] { return std::string(" \u2014 never evaluated"); });
    t.check(false, "breaks", [] { return std::string(" \u2014 why"); });
    t.check(false, "plain");
    t.info("note");
    EXPECT_EQ(t.lines(), (std::vector<std::string>{"\n== Section ==", "  PASS  holds",
                                                   "  FAIL  breaks \u2014 why", "  FAIL  plain",
                                                   "  info  note"}));
    EXPECT_EQ(t.passed(), 1);
    EXPECT_EQ(t.failed(), 2);
}

TEST(SelfTestReport, an_empty_library_reports_failures_and_still_ends_with_the_result_line) {
    SpecimenLibrary library({}, "The offline library file is missing from the app.");
    SelfTest t(library, std::nullopt);
    std::string report = t.runAll();
    auto lines = reportLines(report);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "Quarrydex 2.0 self-test \u2014 Fernwick");
    EXPECT_EQ(lines[1], "Library: 0 species");
    EXPECT_NE(report.find("  FAIL  library loads without error \u2014 The offline library file is "
                          "missing from the app."),
              std::string::npos);
    EXPECT_NE(report.find("  FAIL  at least 100 species (0)"), std::string::npos);
    EXPECT_NE(
        report.find("  FAIL  sample photos are bundled with the app \u2014 Samples folder not "
                    "found"),
        std::string::npos);
    EXPECT_GT(t.failed(), 0);
    EXPECT_EQ(lines.back(), "RESULT: " + std::to_string(t.passed()) + " passed, " +
                                std::to_string(t.failed()) + " failed");
    EXPECT_EQ(lines[lines.size() - 2], "") << "a blank line before the result";
}

TEST(LibraryRules, each_broken_rule_is_named) {
    Specimen s = makeSpecimen("Bad Id", "");
    s.summary = "short";
    s.hardnessMin = 7;
    s.hardnessMax = 6;
    s.colorHex = {"#12345"};
    s.lookAlikes = {{"X", "too short"}};
    s.habits = {"spiky"};
    s.colors = {"ochre"};
    s.luster = "shiny";
    s.streak = "ochre";
    s.specificGravity = "heavy";
    s.birthstone = "June, Smarch";
    auto p = LibraryChecks::problems(s);
    for (const char* label :
         {"bad id", "name/group", "text fields too short", "hardness range", "colors/hex",
          "look-alikes", "habit tags spiky", "colors map to no color family ochre",
          "luster 'shiny' maps to no answer", "streak 'ochre' maps to no answer",
          "specific gravity unparseable", "birthstone month 'Smarch'"}) {
        EXPECT_NE(std::find(p.begin(), p.end(), "Bad Id: " + std::string(label)), p.end()) << label;
    }
    EXPECT_TRUE(LibraryChecks::problems(makeSpecimen("fine", "Fine")).empty());
    Specimen light = makeSpecimen("light", "Light");
    light.specificGravity = "below 0.3";
    EXPECT_EQ(LibraryChecks::problems(light),
              std::vector<std::string>{"light: specific gravity out of range"});
    Specimen hard = makeSpecimen("hard", "Hard");
    hard.streak = "ochre";
    hard.hardnessMax = 7;
    EXPECT_TRUE(LibraryChecks::problems(hard).empty()) << "no streak on the tile counts";
}

TEST(LibraryRules, fizzing_and_magnetism_are_reserved) {
    Specimen calcite = makeSpecimen("calcite", "Calcite");
    calcite.group = "Carbonate";
    calcite.fizzes = true;
    Specimen trilobite = makeSpecimen("trilobite", "Trilobite");
    trilobite.category = SpecimenCategory::fossil;
    trilobite.summary = "Its shell was calcite.";
    trilobite.fizzes = true;
    Specimen quartz = makeSpecimen("quartz", "Quartz");
    quartz.fizzes = true;
    EXPECT_EQ(LibraryChecks::fizzOffenders({calcite, trilobite, quartz}),
              std::vector<std::string>{"quartz"});

    Specimen magnetite = makeSpecimen("magnetite", "Magnetite");
    magnetite.magnetic = true;
    Specimen iron = makeSpecimen("iron", "Iron meteorite");
    iron.category = SpecimenCategory::meteorite;
    EXPECT_EQ(LibraryChecks::magneticOffenders({magnetite, iron}),
              std::vector<std::string>{"iron"});
}

TEST(TextbookProfile, answers_come_from_first_colour_first_habit_and_middle_values) {
    Specimen s = makeSpecimen("x", "X");
    s.colors = {"olive green", "black"};
    s.luster = "Greasy to vitreous"; // the first answer in declaration order: glassy
    s.habits = {"botryoidal", "massive"};
    s.hardnessMin = 3;
    s.hardnessMax = 5; // middle 4: steel
    s.streak = "Pale green";
    s.specificGravity = "3.9–4.3"; // middle 4.1: heavy
    Answers expected{ColorFamily::green,  LusterAnswer::glassy, ScratchAnswer::steel,
                     StreakAnswer::green, HabitAnswer::bubbly,  MagnetAnswer::none,
                     FizzAnswer::none,    HeftAnswer::heavy};
    EXPECT_EQ(LibraryChecks::profile(s).summary(), expected.summary());

    s.streak = "None";
    s.specificGravity.reset();
    expected.streak = StreakAnswer::none;
    expected.heft = HeftAnswer::normal;
    EXPECT_EQ(LibraryChecks::profile(s).summary(), expected.summary());
}
