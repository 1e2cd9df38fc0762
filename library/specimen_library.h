#pragma once
// The reference library for the whole run: species sorted by name, indexed by id, and
// the load error the screens show instead of failing. Read-only once built; safe to
// share between the matcher, the screens and the self-test.

#include "library/specimen.h"
#include "store/timestamp.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quarrydex {

class SpecimenLibrary {
public:
    // Sorts by name (stable, byte order) and indexes by id; the first of duplicate ids wins.
    explicit SpecimenLibrary(std::vector<Specimen> specimens = {},
                             std::optional<std::string> error = std::nullopt);

    // "specimens.json" from the program's resources (see ResourceLocator).
    static SpecimenLibrary bundled();
    static SpecimenLibrary bundled(const std::filesystem::path& resourceFolder);
    static SpecimenLibrary fromFile(const std::filesystem::path& file);

    const std::vector<Specimen>& specimens() const { return specimens_; }
    const std::optional<std::string>& loadError() const { return loadError_; }

    const Specimen* specimen(std::optional<std::string_view> id) const;

    // Species of one category, or all; library order.
    std::vector<Specimen> specimens(std::optional<SpecimenCategory> category) const;
    int count(SpecimenCategory category) const;
    // Case-insensitive substring search over name, group, formula, colours, localities
    // and birthstone; blanks around the query (tabs and Unicode spaces, a pasted no-break
    // space too, but not line breaks) are ignored.
    std::vector<Specimen> search(std::string_view query,
                                 std::optional<SpecimenCategory> category = std::nullopt) const;
    // One species a day, walking the library in name order; changes at local midnight.
    std::optional<Specimen> specimenOfTheDay(Timestamp date = Timestamp::now()) const;

private:
    std::vector<Specimen> specimens_;
    std::optional<std::string> loadError_;
    std::unordered_map<std::string, std::size_t> byID_;
};

// Lower case by Unicode rules, without locale; plain ASCII takes a fast path.
std::string lowercased(std::string_view text);

} // namespace quarrydex
