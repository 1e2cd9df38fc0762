#pragma once
// The user's own records and the data file that holds them ("quarrydex-data.json").
//
// The records are plain values; StoneStore owns the lists and the files. The JSON forms
// here are those of the data file only: backups have records and date encodings of their
// own and convert from and to these.

#include "store/result.h"
#include "store/timestamp.h"
#include "store/uuid.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

// One piece in the user's collection. Default-construct it and set `name` and `location`
// (which are meant to be given) and whatever else differs from the defaults. Designated
// initializers that leave fields out work too, but GCC's -Wextra warns about them.
struct CollectionEntry {
    Uuid id = Uuid::random();
    std::optional<std::string> specimenID; // library species id; none for a freely named piece
    std::string name;
    Timestamp dateAdded = Timestamp::now();
    // Raw value of an Acquisition, kept as text so an unknown word survives load and save.
    std::string acquisition = "found";
    std::string location;
    std::string notes;
    std::optional<double> confidence;     // identifier's confidence for specimenID
    std::optional<std::string> photoFile; // bare file name in the photo folder, never a path
    std::optional<bool> isSample;         // true only for pieces of the sample collection
    std::optional<std::string> sampleID;

    bool operator==(const CollectionEntry&) const = default;

    // The entry's object in the data file. Optional fields without a value are left out.
    nlohmann::json toJson() const;
    // Fails on a missing required key, a wrong JSON type or an ill-formed UUID; unknown
    // keys are ignored. Never throws.
    static quarrydex::Result<CollectionEntry> fromJson(const nlohmann::json& object);
};

// One past identification.
struct HistoryEntry {
    // One candidate of the identification. (Inside HistoryEntry the name Result means this
    // struct; the result type of the core is spelled quarrydex::Result here.)
    struct Result {
        std::string specimenID;
        double confidence = 0;

        bool operator==(const Result&) const = default;
    };

    Uuid id = Uuid::random(); // adding an entry with an existing id replaces that entry
    Timestamp date = Timestamp::now();
    std::vector<std::string> answers; // the answers as readable lines
    std::vector<Result> results;      // best first
    std::string level;                // raw value of the top result's confidence level
    std::optional<std::string> photoFile;
    std::optional<bool> isSample;

    bool operator==(const HistoryEntry&) const = default;

    nlohmann::json toJson() const;
    static quarrydex::Result<HistoryEntry> fromJson(const nlohmann::json& object);
};

// The whole data file.
struct StoneDataFile {
    int version = 1;                         // read but not checked; always written as 1
    std::vector<CollectionEntry> collection; // newest dateAdded first
    std::vector<HistoryEntry> history;       // newest first
    std::vector<std::string> favorites;      // species ids in the order they were starred

    bool operator==(const StoneDataFile&) const = default;

    nlohmann::json toJson() const;
    static Result<StoneDataFile> fromJson(const nlohmann::json& object);

    // The file's text: pretty-printed with two-space indentation, keys sorted in byte
    // order, dates as seconds since 2001-01-01 that read back bit for bit. Bytes that are
    // not valid UTF-8 are written as U+FFFD rather than failing the save. Fails only when
    // a number is not finite (JSON cannot hold it, and null would make the file unreadable).
    Result<std::string> encode() const;
    // Reads the file's text. Any fault (bad JSON, missing key, wrong type, ill-formed UUID)
    // fails the whole file; there is no per-record recovery. Never throws.
    static Result<StoneDataFile> decode(std::string_view text);
};

} // namespace quarrydex
