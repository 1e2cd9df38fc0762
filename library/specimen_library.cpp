#include "library/specimen_library.h"

#include "library/resource_locator.h"
#include "library/white_space.h"

#include <algorithm>
#include <fstream>
#include <glib.h> // g_utf8_strdown
#include <sstream>

namespace quarrydex {

std::string lowercased(std::string_view text) {
    std::string out(text);
    bool ascii = true;
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        } else if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
        }
    }
    if (!ascii) {
        // Non-ASCII letters ("Émeraude") need Unicode case rules.
        gchar* lower = g_utf8_strdown(text.data(), static_cast<gssize>(text.size()));
        if (lower) {
            out = lower;
            g_free(lower);
        }
    }
    return out;
}

SpecimenLibrary::SpecimenLibrary(std::vector<Specimen> specimens, std::optional<std::string> error)
    : specimens_(std::move(specimens)), loadError_(std::move(error)) {
    // std::string compares bytes, which for UTF-8 is the order of Unicode scalar values.
    std::stable_sort(specimens_.begin(), specimens_.end(),
                     [](const Specimen& a, const Specimen& b) { return a.name < b.name; });
    for (std::size_t i = 0; i < specimens_.size(); ++i) {
        byID_.try_emplace(specimens_[i].id, i);
    }
}

SpecimenLibrary SpecimenLibrary::bundled() {
    return bundled(ResourceLocator::resourceFolder());
}

SpecimenLibrary SpecimenLibrary::bundled(const std::filesystem::path& resourceFolder) {
    auto file = ResourceLocator::url("specimens", "json", resourceFolder);
    if (!file) {
        return SpecimenLibrary({}, "The offline library file is missing from the app.");
    }
    return fromFile(*file);
}

SpecimenLibrary SpecimenLibrary::fromFile(const std::filesystem::path& file) {
    const std::string prefix = "The offline library could not be read: ";
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        return SpecimenLibrary({}, prefix + "the file " + file.filename().string() +
                                       " couldn't be opened.");
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    auto decoded = decodeSpecimens(bytes.str());
    if (!decoded) {
        return SpecimenLibrary({}, prefix + decoded.error());
    }
    return SpecimenLibrary(std::move(decoded).value());
}

const Specimen* SpecimenLibrary::specimen(std::optional<std::string_view> id) const {
    if (!id) {
        return nullptr;
    }
    auto it = byID_.find(std::string(*id));
    return it == byID_.end() ? nullptr : &specimens_[it->second];
}

std::vector<Specimen> SpecimenLibrary::specimens(std::optional<SpecimenCategory> category) const {
    if (!category) {
        return specimens_;
    }
    std::vector<Specimen> out;
    std::copy_if(specimens_.begin(), specimens_.end(), std::back_inserter(out),
                 [&](const Specimen& s) { return s.category == *category; });
    return out;
}

int SpecimenLibrary::count(SpecimenCategory category) const {
    return static_cast<int>(
        std::count_if(specimens_.begin(), specimens_.end(),
                      [&](const Specimen& s) { return s.category == category; }));
}

std::vector<Specimen> SpecimenLibrary::search(std::string_view query,
                                              std::optional<SpecimenCategory> category) const {
    std::vector<Specimen> pool = specimens(category);
    std::string_view trimmed = trimBlanks(query);
    if (trimmed.empty()) {
        return pool;
    }
    const std::string needle = lowercased(trimmed);
    auto has = [&](std::string_view text) {
        return lowercased(text).find(needle) != std::string::npos;
    };
    auto anyOf = [&](const std::vector<std::string>& texts) {
        return std::any_of(texts.begin(), texts.end(), has);
    };
    std::vector<Specimen> out;
    for (auto& s : pool) {
        if (has(s.name) || has(s.group) || (s.formula && has(*s.formula)) || anyOf(s.colors) ||
            anyOf(s.localities) || (s.birthstone && has(*s.birthstone))) {
            out.push_back(std::move(s));
        }
    }
    return out;
}

std::optional<Specimen> SpecimenLibrary::specimenOfTheDay(Timestamp date) const {
    if (specimens_.empty()) {
        return std::nullopt;
    }
    long ordinal = date.localDayOrdinal();
    auto n = static_cast<long>(specimens_.size());
    return specimens_[static_cast<std::size_t>(((ordinal % n) + n) % n)];
}

} // namespace quarrydex
