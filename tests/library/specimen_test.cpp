#include "library/specimen.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

TEST(SpecimenText, hardness_text_prints_whole_numbers_without_decimals_and_ranges_with_en_dash) {
    Specimen s = makeSpecimen("x", "X");
    s.hardnessMin = s.hardnessMax = 3;
    EXPECT_EQ(s.hardnessText(), "3 Mohs");
    s.hardnessMin = 2.5;
    EXPECT_EQ(s.hardnessText(), "2.5\u20133 Mohs");
    s.hardnessMin = 6;
    s.hardnessMax = 7;
    EXPECT_EQ(s.hardnessText(), "6\u20137 Mohs");
    s.hardnessMin = s.hardnessMax = 2.5;
    EXPECT_EQ(s.hardnessText(), "2.5 Mohs");
}

TEST(SpecimenText, number_scan_keeps_well_formed_tokens_only) {
    EXPECT_EQ(extractNumbers("2.6\u20132.8"), (std::vector<double>{2.6, 2.8}));
    EXPECT_EQ(extractNumbers("about 5"), (std::vector<double>{5}));
    EXPECT_TRUE(extractNumbers("2.6.5").empty());
    EXPECT_EQ(extractNumbers(".5 and 7."), (std::vector<double>{5, 7}));
    EXPECT_TRUE(extractNumbers("n/a").empty());
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

TEST(SpecimenDecoding, null_optionals_and_unknown_keys_decode) {
    auto decoded = decodeSpecimens(test::readFile(test::fixture("library/two-species.json")));
    ASSERT_TRUE(decoded) << decoded.error();
    ASSERT_EQ(decoded->size(), 2u);
    const Specimen& quartz = (*decoded)[0];
    EXPECT_FALSE(quartz.birthstone);
    EXPECT_FALSE(quartz.cleavage);
    EXPECT_EQ(quartz.formula, "SiO2");
    EXPECT_EQ((*decoded)[1].category, SpecimenCategory::gemstone);
}

TEST(SpecimenDecoding, one_bad_record_fails_the_whole_file) {
    auto missing = decodeSpecimens(test::readFile(test::fixture("library/missing-luster.json")));
    ASSERT_FALSE(missing);
    EXPECT_NE(missing.error().find("luster"), std::string::npos) << missing.error();

    auto category = decodeSpecimens(test::readFile(test::fixture("library/unknown-category.json")));
    ASSERT_FALSE(category);
    EXPECT_NE(category.error().find("crystal"), std::string::npos) << category.error();
}

TEST(SpecimenDecoding, wrong_types_are_refused_not_coerced) {
    nlohmann::json record = toJson(makeSpecimen("x", "X"));
    for (const char* key : {"hardnessMin", "magnetic", "colors", "name"}) {
        nlohmann::json broken = record;
        broken[key] = key == std::string("name") ? nlohmann::json(5) : nlohmann::json("5");
        EXPECT_FALSE(specimenFromJson(broken)) << key;
    }
    nlohmann::json badLookAlike = record;
    badLookAlike["lookAlikes"] = {{{"name", "Y"}}};
    EXPECT_FALSE(specimenFromJson(badLookAlike));
    EXPECT_FALSE(decodeSpecimens("[1]"));
    EXPECT_FALSE(decodeSpecimens("not json"));
}

TEST(SpecimenDecoding, encoding_then_decoding_gives_the_same_record) {
    Specimen s = makeSpecimen("rose-quartz", "Rose Quartz");
    s.formula = "SiO2";
    s.birthstone = "October";
    s.magnetic = true;
    auto back = specimenFromJson(toJson(s));
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(*back, s);
}

TEST(SpecimenCategoryInfo, categories_have_their_display_texts_in_order) {
    const auto& all = allSpecimenCategories();
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[2].rawValue, "rock");
    EXPECT_EQ(all[2].title, "Rocks");
    EXPECT_EQ(all[2].singular, "Rock");
    EXPECT_EQ(all[2].symbol, "mountain.2");
    EXPECT_EQ(specimenCategoryFromRaw("meteorite"), SpecimenCategory::meteorite);
    EXPECT_FALSE(specimenCategoryFromRaw("Meteorite"));
}
