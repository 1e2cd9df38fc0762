#include "library/resource_locator.h"
#include "library/specimen_library.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

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

TEST(SpecimenLibraryLoading, load_errors_carry_the_exact_messages_and_load_nothing) {
    test::TempDir dir;
    EXPECT_EQ(SpecimenLibrary::bundled(dir.path()).loadError(),
              "The offline library file is missing from the app.");
    for (const std::filesystem::path& file :
         {test::fixture("library/object.json"), test::fixture("library/missing-luster.json"),
          dir / "nothing.json"}) {
        SpecimenLibrary library = SpecimenLibrary::fromFile(file);
        ASSERT_TRUE(library.loadError()) << file;
        EXPECT_TRUE(library.loadError()->starts_with("The offline library could not be read: "));
        EXPECT_TRUE(library.specimens().empty()) << "no partial load";
    }
    SpecimenLibrary empty = SpecimenLibrary::fromFile(test::fixture("library/empty.json"));
    EXPECT_FALSE(empty.loadError()) << "an empty array is a valid empty library";
    EXPECT_FALSE(empty.specimenOfTheDay()) << "and has no stone of the day";
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

// Blank queries give the whole category; otherwise the trimmed query is one case-blind
// substring, line breaks included.
TEST_F(SpecimenSearch, queries_are_trimmed_case_blind_substrings) {
    EXPECT_EQ(found(" \t "), (std::vector<std::string>{"Amethyst", "Basalt", "Galena"}));
    EXPECT_EQ(found("", SpecimenCategory::rock), (std::vector<std::string>{"Basalt"}));
    EXPECT_EQ(found("  GALENA\t"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("pbs"), (std::vector<std::string>{"Galena"}));
    EXPECT_TRUE(found("galena\n").empty());
    // Pasted text: a no-break space and other Unicode blanks are trimmed like ASCII ones.
    EXPECT_EQ(found("\u00A0galena\u00A0"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("\u3000\u2003Galena\u202F\t"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("\u00A0\u2009"), (std::vector<std::string>{"Amethyst", "Basalt", "Galena"}));
    EXPECT_TRUE(found("galena\u2028").empty()) << "a line separator is a line break";
    EXPECT_TRUE(found("lead\u00A0gray").empty()) << "inside the query it is a character";
    EXPECT_EQ(found("lead gray"), (std::vector<std::string>{"Galena"}));
    EXPECT_TRUE(found("gray lead").empty());
}

TEST_F(SpecimenSearch, searches_group_colours_localities_and_birthstone_only) {
    EXPECT_EQ(found("february"), (std::vector<std::string>{"Amethyst"}));
    EXPECT_EQ(found("missouri"), (std::vector<std::string>{"Galena"}));
    EXPECT_EQ(found("gray"), (std::vector<std::string>{"Basalt", "Galena"}));
    EXPECT_EQ(found("volcanic"), (std::vector<std::string>{"Basalt"}));
    EXPECT_TRUE(found("unmistakable").empty()) << "summary is not searched";
    EXPECT_TRUE(found("basalt", SpecimenCategory::mineral).empty());
}

TEST(StoneOfTheDay, walks_the_library_one_species_a_day_and_wraps) {
    SpecimenLibrary library(
        {makeSpecimen("a", "A"), makeSpecimen("b", "B"), makeSpecimen("c", "C")});
    // Noon UTC stays on one calendar day in the time zone the tests run in.
    const Timestamp day = Timestamp::parseIsoUtc("2026-11-22T12:00:00Z").value();
    auto index = [&](const Timestamp& t) {
        const std::string id = library.specimenOfTheDay(t)->id;
        return static_cast<int>(id[0] - 'a');
    };
    const int first = index(day);
    for (int d = 1; d <= 4; ++d) {
        EXPECT_EQ(index(day.plusSeconds(86400.0 * d)), (first + d) % 3) << "day " << d;
    }
    EXPECT_EQ(index(day.plusSeconds(3600)), first) << "same day, same stone";
}
