#include "library/specimen.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace quarrydex {
using nlohmann::json;

namespace {

constexpr std::array<SpecimenCategoryInfo, 5> categories{{
    {SpecimenCategory::mineral, "mineral", "Minerals", "Mineral", "cube"},
    {SpecimenCategory::gemstone, "gemstone", "Gemstones", "Gemstone", "diamond"},
    {SpecimenCategory::rock, "rock", "Rocks", "Rock", "mountain.2"},
    {SpecimenCategory::fossil, "fossil", "Fossils", "Fossil", "leaf"},
    {SpecimenCategory::meteorite, "meteorite", "Meteorites", "Meteorite", "sparkles"},
}};

// Thrown inside decoding only, turned into an error value at the boundary.
struct DecodeError {
    std::string message;
};

const json& required(const json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end()) {
        throw DecodeError{std::string("missing key \"") + key + "\""};
    }
    return *it;
}

std::string string(const json& object, const char* key) {
    const json& value = required(object, key);
    if (!value.is_string()) {
        throw DecodeError{std::string("\"") + key + "\" is not a string"};
    }
    return value.get<std::string>();
}

std::optional<std::string> optionalString(const json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end() || it->is_null()) {
        return std::nullopt;
    }
    if (!it->is_string()) {
        throw DecodeError{std::string("\"") + key + "\" is not a string"};
    }
    return it->get<std::string>();
}

double number(const json& object, const char* key) {
    const json& value = required(object, key);
    if (!value.is_number()) {
        throw DecodeError{std::string("\"") + key + "\" is not a number"};
    }
    return value.get<double>();
}

bool boolean(const json& object, const char* key) {
    const json& value = required(object, key);
    if (!value.is_boolean()) {
        throw DecodeError{std::string("\"") + key + "\" is not true or false"};
    }
    return value.get<bool>();
}

std::vector<std::string> strings(const json& object, const char* key) {
    const json& value = required(object, key);
    if (!value.is_array()) {
        throw DecodeError{std::string("\"") + key + "\" is not a list"};
    }
    std::vector<std::string> out;
    for (const json& item : value) {
        if (!item.is_string()) {
            throw DecodeError{std::string("\"") + key + "\" holds a value that is not a string"};
        }
        out.push_back(item.get<std::string>());
    }
    return out;
}

Specimen decode(const json& j) {
    if (!j.is_object()) {
        throw DecodeError{"a record is not an object"};
    }
    Specimen s;
    s.id = string(j, "id");
    try {
        s.name = string(j, "name");
        std::string category = string(j, "category");
        auto c = specimenCategoryFromRaw(category);
        if (!c) {
            throw DecodeError{"unknown category \"" + category + "\""};
        }
        s.category = *c;
        s.group = string(j, "group");
        s.formula = optionalString(j, "formula");
        s.crystalSystem = optionalString(j, "crystalSystem");
        s.hardnessMin = number(j, "hardnessMin");
        s.hardnessMax = number(j, "hardnessMax");
        s.specificGravity = optionalString(j, "specificGravity");
        s.luster = string(j, "luster");
        s.streak = string(j, "streak");
        s.cleavage = optionalString(j, "cleavage");
        s.magnetic = boolean(j, "magnetic");
        s.colors = strings(j, "colors");
        s.colorHex = strings(j, "colorHex");
        s.summary = string(j, "summary");
        s.history = string(j, "history");
        s.localities = strings(j, "localities");
        const json& lookAlikes = required(j, "lookAlikes");
        if (!lookAlikes.is_array()) {
            throw DecodeError{"\"lookAlikes\" is not a list"};
        }
        for (const json& l : lookAlikes) {
            if (!l.is_object()) {
                throw DecodeError{"a look-alike is not an object"};
            }
            s.lookAlikes.push_back({string(l, "name"), string(l, "tip")});
        }
        s.care = string(j, "care");
        s.birthstone = optionalString(j, "birthstone");
        s.uses = string(j, "uses");
        s.habits = strings(j, "habits");
        s.fizzes = boolean(j, "fizzes");
    } catch (const DecodeError& e) {
        throw DecodeError{"species \"" + s.id + "\": " + e.message};
    }
    return s;
}

} // namespace

const std::array<SpecimenCategoryInfo, 5>& allSpecimenCategories() {
    return categories;
}

const SpecimenCategoryInfo& info(SpecimenCategory category) {
    return categories[static_cast<std::size_t>(category)];
}

std::optional<SpecimenCategory> specimenCategoryFromRaw(std::string_view raw) {
    for (const auto& c : categories) {
        if (c.rawValue == raw) {
            return c.category;
        }
    }
    return std::nullopt;
}

std::string numberText(double value) {
    // Whole numbers are told apart without converting to an integer type, which is
    // undefined for a value beyond its range (a library file may hold 1e51).
    const bool whole = std::isfinite(value) && std::trunc(value) == value;
    char buffer[400]; // wide enough for any double in either form
    std::snprintf(buffer, sizeof buffer, whole ? "%.0f" : "%.1f", value == 0 ? 0.0 : value);
    return buffer;
}

std::string Specimen::hardnessText() const {
    std::string text = numberText(hardnessMin);
    if (hardnessMin != hardnessMax) {
        text += "\u2013" + numberText(hardnessMax);
    }
    return text + " Mohs";
}

std::vector<double> extractNumbers(std::string_view text) {
    std::vector<double> out;
    std::string token;
    auto flush = [&] {
        if (!token.empty()) {
            double value = 0;
            auto [end, ec] = std::from_chars(token.data(), token.data() + token.size(), value,
                                             std::chars_format::fixed);
            if (ec == std::errc() && end == token.data() + token.size()) {
                out.push_back(value);
            }
            token.clear();
        }
    };
    for (char c : text) {
        if (c >= '0' && c <= '9') {
            token += c;
        } else if (c == '.' && !token.empty()) {
            token += c;
        } else {
            flush();
        }
    }
    flush();
    return out;
}

std::optional<std::pair<double, double>> Specimen::gravityRange() const {
    if (!specificGravity) {
        return std::nullopt;
    }
    std::vector<double> numbers = extractNumbers(*specificGravity);
    if (numbers.empty()) {
        return std::nullopt;
    }
    std::string lower;
    for (char c : *specificGravity) {
        lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    }
    if (lower.starts_with("below")) {
        return std::pair{0.4, numbers[0]};
    }
    double a = numbers[0];
    double b = numbers.size() > 1 ? numbers[1] : a;
    return std::pair{std::min(a, b), std::max(a, b)};
}

Result<Specimen> specimenFromJson(const json& j) {
    try {
        return decode(j);
    } catch (const DecodeError& e) {
        return Error{e.message};
    } catch (const json::exception& e) {
        return Error{e.what()};
    }
}

json toJson(const Specimen& s) {
    json j;
    j["id"] = s.id;
    j["name"] = s.name;
    j["category"] = std::string(info(s.category).rawValue);
    j["group"] = s.group;
    auto optional = [&](const char* key, const std::optional<std::string>& v) {
        if (v) {
            j[key] = *v;
        }
    };
    optional("formula", s.formula);
    optional("crystalSystem", s.crystalSystem);
    j["hardnessMin"] = s.hardnessMin;
    j["hardnessMax"] = s.hardnessMax;
    optional("specificGravity", s.specificGravity);
    j["luster"] = s.luster;
    j["streak"] = s.streak;
    optional("cleavage", s.cleavage);
    j["magnetic"] = s.magnetic;
    j["colors"] = s.colors;
    j["colorHex"] = s.colorHex;
    j["summary"] = s.summary;
    j["history"] = s.history;
    j["localities"] = s.localities;
    j["lookAlikes"] = json::array();
    for (const auto& l : s.lookAlikes) {
        j["lookAlikes"].push_back({{"name", l.name}, {"tip", l.tip}});
    }
    j["care"] = s.care;
    optional("birthstone", s.birthstone);
    j["uses"] = s.uses;
    j["habits"] = s.habits;
    j["fizzes"] = s.fizzes;
    return j;
}

Result<std::vector<Specimen>> decodeSpecimens(std::string_view bytes) {
    try {
        json root = json::parse(bytes);
        if (!root.is_array()) {
            return Error{"the file does not hold a list of species"};
        }
        std::vector<Specimen> out;
        out.reserve(root.size());
        std::unordered_set<std::string> ids;
        for (const json& record : root) {
            out.push_back(decode(record));
            // The matcher weighs species by id; a file naming one twice is damaged.
            if (!ids.insert(out.back().id).second) {
                return Error{"the id \"" + out.back().id + "\" is used by two species"};
            }
        }
        return out;
    } catch (const DecodeError& e) {
        return Error{e.message};
    } catch (const json::exception& e) {
        return Error{e.what()};
    }
}

} // namespace quarrydex
