#include "library/resource_locator.h"
#include "library/specimen_library.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <numeric>

using namespace quarrydex;
using quarrydex::test::makeSpecimen;

namespace {
std::vector<std::string> names(const std::vector<Specimen>& list) {
    std::vector<std::string> out;
    for (const auto& s : list) {
        out.push_back(s.name);
    }
    return out;
}
} // namespace

TEST(SpecimenLibraryLoading, sorts_by_byte_order_keeping_equal_names_in_input_order) {
    Specimen second = makeSpecimen("quartz-2", "Quartz");
    second.group = "second";
    SpecimenLibrary library({makeSpecimen("quartz", "Quartz"), makeSpecimen("agate", "agate"),
                             makeSpecimen("zircon", "Zircon"), second,
                             makeSpecimen("agate-2", "Agate")});
    EXPECT_EQ(names(library.specimens()),
              (std::vector<std::string>{"Agate", "Quartz", "Quartz", "Zircon", "agate"}));
    EXPECT_EQ(library.specimens()[2].group, "second");
}

TEST(SpecimenLibraryLoading, duplicate_ids_keep_the_first_in_name_order_and_list_both) {
    SpecimenLibrary library({makeSpecimen("dup", "Zeta"), makeSpecimen("dup", "Alpha")});
    ASSERT_NE(library.specimen("dup"), nullptr);
    EXPECT_EQ(library.specimen("dup")->name, "Alpha");
    EXPECT_EQ(library.specimens().size(), 2u);
    EXPECT_EQ(library.specimen(std::nullopt), nullptr);
    EXPECT_EQ(library.specimen(""), nullptr);
    EXPECT_EQ(SpecimenLibrary().specimen("dup"), nullptr);
}

TEST(SpecimenLibraryLoading, load_errors_carry_the_exact_messages) {
    test::TempDir dir;
    SpecimenLibrary missing = SpecimenLibrary::bundled(dir.path());
    EXPECT_EQ(missing.loadError(), "The offline library file is missing from the app.");
    EXPECT_TRUE(missing.specimens().empty());

    SpecimenLibrary object = SpecimenLibrary::fromFile(test::fixture("library/object.json"));
    ASSERT_TRUE(object.loadError());
    EXPECT_TRUE(object.loadError()->starts_with("The offline library could not be read: "));
    EXPECT_TRUE(object.specimens().empty());

    SpecimenLibrary bad = SpecimenLibrary::fromFile(test::fixture("library/missing-luster.json"));
    ASSERT_TRUE(bad.loadError());
    EXPECT_TRUE(bad.specimens().empty()) << "no partial load";

    SpecimenLibrary absent = SpecimenLibrary::fromFile(dir / "nothing.json");
    ASSERT_TRUE(absent.loadError());
    EXPECT_TRUE(absent.loadError()->starts_with("The offline library could not be read: "));
}

TEST(SpecimenLibraryLoading, an_empty_array_is_a_valid_empty_library) {
    SpecimenLibrary library = SpecimenLibrary::fromFile(test::fixture("library/empty.json"));
    EXPECT_FALSE(library.loadError());
    EXPECT_TRUE(library.specimens().empty());
    EXPECT_FALSE(library.specimenOfTheDay());
    EXPECT_TRUE(library.search("quartz").empty());
    EXPECT_EQ(library.count(SpecimenCategory::mineral), 0);
}

TEST(ResourceSearch, own_folder_first_then_nested_packages_in_name_order) {
    test::TempDir dir;
    std::filesystem::create_directories(dir / "B.bundle");
    std::filesystem::create_directories(dir / "A.bundle");
    test::writeFile(dir / "B.bundle" / "specimens.json", "[]");
    EXPECT_EQ(ResourceLocator::url("specimens", "json", dir.path()),
              dir / "B.bundle" / "specimens.json");
    test::writeFile(dir / "A.bundle" / "specimens.json", "[]");
    EXPECT_EQ(ResourceLocator::url("specimens", "json", dir.path()),
              dir / "A.bundle" / "specimens.json");
    test::writeFile(dir / "specimens.json", "[]");
    EXPECT_EQ(ResourceLocator::url("specimens", "json", dir.path()), dir / "specimens.json");
    EXPECT_FALSE(ResourceLocator::url("samples", "json", dir.path()));

    SpecimenLibrary nested = SpecimenLibrary::bundled(test::fixture("library/nested"));
    EXPECT_FALSE(nested.loadError());
    ASSERT_EQ(nested.specimens().size(), 1u);
    EXPECT_EQ(nested.specimens()[0].id, "agate");
}

class SpecimenSearch : public ::testing::Test {
protected:
    SpecimenSearch() {
        Specimen amethyst = makeSpecimen("amethyst", "Amethyst");
        amethyst.category = SpecimenCategory::gemstone;
        amethyst.group = "Quartz variety";
        amethyst.formula = "SiO2";
        amethyst.colors = {"purple", "violet"};
        amethyst.birthstone = "February";
        amethyst.localities = {"Rio Grande do Sul, Brazil"};
        amethyst.summary = "Unmistakable purple crystals.";
        Specimen galena = makeSpecimen("galena", "Galena");
        galena.group = "Sulfide";
        galena.formula = "PbS";
        galena.colors = {"lead gray"};
        galena.localities = {"Joplin, Missouri, USA"};
        Specimen basalt = makeSpecimen("basalt", "Basalt");
        basalt.category = SpecimenCategory::rock;
        basalt.group = "Volcanic rock";
        basalt.colors = {"dark gray", "black"};
        library = SpecimenLibrary({galena, amethyst, basalt});
    }
    std::vector<std::string> found(std::string_view q, std::optional<SpecimenCategory> c = {}) {
        return names(library.search(q, c));
    }
    SpecimenLibrary library;
};

TEST_F(SpecimenSearch, blank_queries_return_the_whole_category) {
    EXPECT_EQ(found(" \t "), (std::vector<std::string>{"Amethyst", "Basalt", "Galena"}));
    EXPECT_EQ(found("", SpecimenCategory::rock), (std::vector<std::string>{"Basalt"}));
}

TEST_F(SpecimenSearch, matching_ignores_case_and_surrounding_blanks_but_not_line_breaks) {
    EXPECT_EQ(found("  GALENA\t"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("pbs"), (std::vector<std::string>{"Galena"}));
    EXPECT_TRUE(found("galena\n").empty());
}

TEST_F(SpecimenSearch, searches_group_colours_localities_and_birthstone_only) {
    EXPECT_EQ(found("february"), (std::vector<std::string>{"Amethyst"}));
    EXPECT_EQ(found("missouri"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("gray"), (std::vector<std::string>{"Basalt", "Galena"}));
    EXPECT_EQ(found("volcanic"), (std::vector<std::string>{"Basalt"}));
    EXPECT_TRUE(found("unmistakable").empty()) << "summary is not searched";
    EXPECT_TRUE(found("basalt", SpecimenCategory::mineral).empty());
}

TEST_F(SpecimenSearch, two_words_are_one_substring) {
    EXPECT_EQ(found("lead gray"), (std::vector<std::string>{"Galena"}));
    EXPECT_TRUE(found("gray lead").empty());
}

TEST_F(SpecimenSearch, category_counts_add_up_to_the_library) {
    int total = 0;
    for (const auto& c : allSpecimenCategories()) {
        total += library.count(c.category);
        EXPECT_EQ(static_cast<int>(library.specimens(c.category).size()),
                  library.count(c.category));
    }
    EXPECT_EQ(total, 3);
    EXPECT_EQ(library.specimens(std::nullopt).size(), 3u);
}

TEST_F(SpecimenSearch, stone_of_the_day_walks_the_library_one_species_a_day) {
    // Noon UTC stays on the same calendar day in every time zone the tests run in.
    Timestamp day = Timestamp::parseIsoUtc("2026-11-22T12:00:00Z").value();
    std::vector<std::string> seen;
    for (int i = 0; i < 4; ++i) {
        seen.push_back(library.specimenOfTheDay(day.plusSeconds(86400.0 * i))->id);
    }
    auto index = [&](const std::string& id) {
        for (std::size_t k = 0; k < library.specimens().size(); ++k) {
            if (library.specimens()[k].id == id) {
                return k;
            }
        }
        return std::size_t(99);
    };
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(index(seen[i]), (index(seen[i - 1]) + 1) % 3) << "day " << i;
    }
    EXPECT_EQ(library.specimenOfTheDay(day.plusSeconds(3600))->id, seen[0])
        << "same day, same pick";
}
