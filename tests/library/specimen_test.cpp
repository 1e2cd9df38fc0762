#include "library/specimen.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

// A library file may hold any number; a whole one beyond 64 bits was converted to an
// integer, which is undefined (found by fuzzing).
TEST(SpecimenText, hardness_text_writes_whole_numbers_without_a_fraction_at_any_size) {
    EXPECT_EQ(numberText(6), "6");
    EXPECT_EQ(numberText(5.5), "5.5");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(4e51), "3999999999999999972883794697446511905846833767776256");
    EXPECT_EQ(numberText(-1e19), "-10000000000000000000");
    Specimen s = makeSpecimen("x", "X");
    s.hardnessMin = 7;
    s.hardnessMax = 1e300;
    EXPECT_TRUE(s.hardnessText().starts_with("7\u2013100000000000000005")) << s.hardnessText();
}

TEST(SpecimenText, gravity_range_handles_below_reversed_single_and_missing_values) {
    Specimen s = makeSpecimen("x", "X");
    auto range = [&](std::optional<std::string> text) {
        s.specificGravity = std::move(text);
        return s.gravityRange();
    };
    EXPECT_EQ(range("below 1.0"), (std::pair{0.4, 1.0}));
    EXPECT_EQ(range("Below 1"), (std::pair{0.4, 1.0}));
    EXPECT_EQ(range("2.8\u20132.6"), (std::pair{2.6, 2.8}));
    EXPECT_EQ(range("5.2"), (std::pair{5.2, 5.2}));
    EXPECT_EQ(range("2.6, 2.7 or 3.9"), (std::pair{2.6, 2.7}));
    EXPECT_FALSE(range("n/a"));
    EXPECT_FALSE(range(std::nullopt));
}

TEST(SpecimenDecoding, null_optionals_and_unknown_keys_decode_and_records_round_trip) {
    auto decoded = decodeSpecimens(test::readFile(test::fixture("library/two-species.json")));
    ASSERT_TRUE(decoded) << decoded.error();
    ASSERT_EQ(decoded->size(), 2u);
    const Specimen& quartz = (*decoded)[0];
    EXPECT_FALSE(quartz.birthstone);
    EXPECT_FALSE(quartz.cleavage);
    EXPECT_EQ(quartz.formula, "SiO2");
    EXPECT_EQ((*decoded)[1].category, SpecimenCategory::gemstone);

    Specimen s = makeSpecimen("rose-quartz", "Rose Quartz"); // and a record reads back equal
    s.formula = "SiO2";
    s.birthstone = "October";
    s.magnetic = true;
    auto back = specimenFromJson(toJson(s));
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(*back, s);
}

// One bad record fails the whole file, and values of the wrong type are not coerced.
TEST(SpecimenDecoding, bad_records_and_wrong_types_are_refused) {
    for (auto [file, word] : {std::pair{"library/missing-luster.json", "luster"},
                              {"library/unknown-category.json", "crystal"}}) {
        auto decoded = decodeSpecimens(test::readFile(test::fixture(file)));
        ASSERT_FALSE(decoded) << file;
        EXPECT_NE(decoded.error().find(word), std::string::npos) << decoded.error();
    }
    nlohmann::json record = toJson(makeSpecimen("x", "X"));
    for (const char* key : {"hardnessMin", "magnetic", "colors", "name"}) {
        nlohmann::json broken = record;
        broken[key] = key == std::string("name") ? nlohmann::json(5) : nlohmann::json("5");
        EXPECT_FALSE(specimenFromJson(broken)) << key;
    }
    record["lookAlikes"] = {{{"name", "Y"}}};
    EXPECT_FALSE(specimenFromJson(record));
    EXPECT_FALSE(decodeSpecimens("[1]"));
    EXPECT_FALSE(decodeSpecimens("not json"));

    // Two records with one id: the matcher could not tell them apart (found by fuzzing).
    nlohmann::json twice = {toJson(makeSpecimen("quartz", "Quartz")),
                            toJson(makeSpecimen("quartz", "Rock crystal"))};
    auto decoded = decodeSpecimens(twice.dump());
    ASSERT_FALSE(decoded);
    EXPECT_EQ(decoded.error(), "the id \"quartz\" is used by two species");
}
