#pragma once
// One species of the reference library, as read from specimens.json. Records are
// immutable values; everything else in the program refers to a species by its `id`.

#include "store/result.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quarrydex {

enum class SpecimenCategory { mineral, gemstone, rock, fossil, meteorite };

struct SpecimenCategoryInfo {
    SpecimenCategory category;
    std::string_view rawValue; // also the id and the form in JSON
    std::string_view title;    // plural, for filter bars
    std::string_view singular;
    std::string_view symbol; // icon name
};

// Every category in display order.
const std::array<SpecimenCategoryInfo, 5>& allSpecimenCategories();
const SpecimenCategoryInfo& info(SpecimenCategory category);
std::optional<SpecimenCategory> specimenCategoryFromRaw(std::string_view raw);

struct LookAlike {
    std::string name;
    std::string tip; // how to tell the two apart
    bool operator==(const LookAlike&) const = default;
};

struct Specimen {
    std::string id;
    std::string name;
    SpecimenCategory category = SpecimenCategory::mineral;
    std::string group;
    std::optional<std::string> formula;
    std::optional<std::string> crystalSystem;
    double hardnessMin = 1;
    double hardnessMax = 1;
    std::optional<std::string> specificGravity;
    std::string luster;
    std::string streak;
    std::optional<std::string> cleavage;
    bool magnetic = false;
    std::vector<std::string> colors;
    std::vector<std::string> colorHex;
    std::string summary;
    std::string history;
    std::vector<std::string> localities;
    std::vector<LookAlike> lookAlikes;
    std::string care;
    std::optional<std::string> birthstone;
    std::string uses;
    std::vector<std::string> habits;
    bool fizzes = false;

    bool operator==(const Specimen&) const = default;

    // "6–7 Mohs", "2.5 Mohs".
    std::string hardnessText() const;
    // Lower and upper specific gravity read from the free text; none when it holds no number.
    std::optional<std::pair<double, double>> gravityRange() const;
};

// Numbers in a free text, in order: "2.6–2.8" gives 2.6 and 2.8, "about 5" gives 5,
// a malformed token such as "2.6.5" is dropped.
std::vector<double> extractNumbers(std::string_view text);

// "6" for 6.0, "5.5" for 5.5.
std::string numberText(double value);

// Strict decoding: a missing required key, a wrong type or an unknown category fails.
Result<Specimen> specimenFromJson(const nlohmann::json& json);
nlohmann::json toJson(const Specimen& specimen);

// Decodes a whole library file: a JSON array of records with distinct ids, all or nothing.
// The error is a description of what was wrong, for the "could not be read" message.
Result<std::vector<Specimen>> decodeSpecimens(std::string_view bytes);

} // namespace quarrydex
