// The shipped library file, held to every content rule, so that a bad edit fails the
// build's tests rather than reaching a user.

#include "library/specimen_library.h"
#include "selftest/library_checks.h"
#include "support/temp_dir.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

using namespace quarrydex;

namespace {

const SpecimenLibrary& shipped() {
    static const SpecimenLibrary library = SpecimenLibrary::fromFile(
        std::filesystem::path(QUARRYDEX_SOURCE_DIR) / "resources" / "specimens.json");
    return library;
}

std::string join(const std::vector<std::string>& items) {
    std::string out;
    for (const auto& i : items) {
        out += (out.empty() ? "" : ", ") + i;
    }
    return out;
}

} // namespace

TEST(ShippedLibrary, loads_with_enough_species_in_every_category) {
    ASSERT_FALSE(shipped().loadError()) << *shipped().loadError();
    EXPECT_GE(shipped().specimens().size(), 240u);
    EXPECT_GE(shipped().count(SpecimenCategory::rock), 50);
    EXPECT_GE(shipped().count(SpecimenCategory::fossil), 20);
    EXPECT_GE(shipped().count(SpecimenCategory::meteorite), 6);
    EXPECT_GE(shipped().count(SpecimenCategory::mineral), 3);
    EXPECT_GE(shipped().count(SpecimenCategory::gemstone), 3);
}

TEST(ShippedLibrary, every_record_meets_the_content_rules) {
    std::set<std::string> ids, names;
    std::vector<std::string> problems;
    for (const auto& s : shipped().specimens()) {
        EXPECT_TRUE(ids.insert(s.id).second) << "duplicate id " << s.id;
        EXPECT_TRUE(names.insert(s.name).second) << "duplicate name " << s.name;
        auto p = LibraryChecks::problems(s);
        problems.insert(problems.end(), p.begin(), p.end());
        EXPECT_LE(s.habits.size(), 3u) << s.id;
        EXPECT_FALSE(s.id.find('_') != std::string::npos) << s.id << ": words join with '-'";
    }
    EXPECT_TRUE(problems.empty()) << join(problems);
    EXPECT_TRUE(LibraryChecks::fizzOffenders(shipped().specimens()).empty());
    EXPECT_TRUE(LibraryChecks::magneticOffenders(shipped().specimens()).empty());
}

TEST(ShippedLibrary, holds_every_species_the_program_names) {
    std::vector<std::string> needed{"quartz",        "amethyst",  "rose-quartz", "calcite",
                                    "talc",          "gypsum",    "galena",      "pyrite",
                                    "gold",          "hematite",  "magnetite",   "obsidian",
                                    "rhodochrosite", "rhodonite", "pumice",      "petrified-wood",
                                    "dinosaur-bone", "amazonite"};
    // Every species the sample photos point to, when this checkout has them.
    std::filesystem::path manifest =
        std::filesystem::path(QUARRYDEX_SOURCE_DIR) / ".." / "shared" / "Samples" / "samples.json";
    if (std::filesystem::exists(manifest)) {
        for (const auto& sample : nlohmann::json::parse(test::readFile(manifest))) {
            needed.push_back(sample.at("specimenID").get<std::string>());
        }
    }
    for (const auto& id : needed) {
        EXPECT_NE(shipped().specimen(id), nullptr) << id;
    }
}

TEST(ShippedLibrary, textbook_answers_find_each_species) {
    auto c = LibraryChecks::selfConsistency(shipped());
    ASSERT_GT(c.total, 0);
    const double top3 = static_cast<double>(c.inTop3) / c.total;
    const double first = static_cast<double>(c.first) / c.total;
    EXPECT_GE(top3, 0.95) << c.inTop3 << "/" << c.total << " missed: " << join(c.missed);
    EXPECT_GE(first, 0.70) << c.first << "/" << c.total;
}

// Two species that give the same textbook answer to all eight home tests cannot be told apart
// by the identifier, so each one's detail screen must send the reader to the other. A look-alike
// names a species when its name holds the species' name ("Banded agate" names Agate).
TEST(ShippedLibrary, species_with_identical_textbook_answers_name_each_other_as_look_alikes) {
    const auto& all = shipped().specimens();
    std::vector<Answers> profiles;
    for (const auto& s : all) {
        profiles.push_back(LibraryChecks::profile(s));
    }
    auto names = [](const Specimen& s, const Specimen& other) {
        const std::string wanted = lowercased(other.name);
        return std::any_of(s.lookAlikes.begin(), s.lookAlikes.end(), [&](const LookAlike& l) {
            return lowercased(l.name).find(wanted) != std::string::npos;
        });
    };
    std::vector<std::string> unnamed;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = i + 1; j < all.size(); ++j) {
            if (profiles[i] != profiles[j]) {
                continue;
            }
            if (!names(all[i], all[j])) {
                unnamed.push_back(all[i].id + " lacks " + all[j].name);
            }
            if (!names(all[j], all[i])) {
                unnamed.push_back(all[j].id + " lacks " + all[i].name);
            }
        }
    }
    EXPECT_TRUE(unnamed.empty()) << join(unnamed);
}
