#include "store/records.h"

#include <climits>
#include <cmath>
#include <nlohmann/json.hpp>

namespace quarrydex {

using json = nlohmann::json;

namespace {

// Raised by the readers below and turned into an Error at each public entry point; it
// never leaves this file.
struct FormatFault {
    std::string message;
};

std::string quoted(const char* key) {
    return std::string("\"") + key + "\"";
}

const json& required(const json& object, const char* key) {
    auto it = object.find(key);
    if (it == object.end()) {
        throw FormatFault{quoted(key) + " is missing"};
    }
    return *it;
}

const json* optional(const json& object, const char* key) {
    auto it = object.find(key);
    return it == object.end() ? nullptr : &*it;
}

void requireObject(const json& value, const char* what) {
    if (!value.is_object()) {
        throw FormatFault{std::string(what) + " is not an object"};
    }
}

const json& requireArray(const json& value, const char* key) {
    if (!value.is_array()) {
        throw FormatFault{quoted(key) + " is not an array"};
    }
    return value;
}

std::string asString(const json& value, const char* key) {
    if (!value.is_string()) {
        throw FormatFault{quoted(key) + " is not a string"};
    }
    return value.get_ref<const std::string&>();
}

// Integers are numbers too: a hand-edited file may well say "dateAdded": 5. (json's own
// conversion to double would also take true and false, hence the explicit check.)
double asNumber(const json& value, const char* key) {
    if (!value.is_number()) {
        throw FormatFault{quoted(key) + " is not a number"};
    }
    return value.get<double>();
}

// Dates outside the years 1 to 9999 are clamped (see Timestamp), so the file saves and
// backs up as it reads.
Timestamp asDate(const json& value, const char* key) {
    return Timestamp{asNumber(value, key)}.clamped();
}

bool asBool(const json& value, const char* key) {
    if (!value.is_boolean()) {
        throw FormatFault{quoted(key) + " is not true or false"};
    }
    return value.get<bool>();
}

Uuid asUuid(const json& value, const char* key) {
    std::optional<Uuid> id = Uuid::parse(asString(value, key));
    if (!id) {
        throw FormatFault{quoted(key) + " is not a UUID"};
    }
    return *id;
}

std::optional<std::string> optionalString(const json& object, const char* key) {
    const json* value = optional(object, key);
    return value ? std::optional(asString(*value, key)) : std::nullopt;
}

std::optional<bool> optionalBool(const json& object, const char* key) {
    const json* value = optional(object, key);
    return value ? std::optional(asBool(*value, key)) : std::nullopt;
}

std::vector<std::string> stringList(const json& value, const char* key) {
    std::vector<std::string> list;
    list.reserve(requireArray(value, key).size());
    for (const json& item : value) {
        list.push_back(asString(item, key));
    }
    return list;
}

CollectionEntry readCollectionEntry(const json& object) {
    requireObject(object, "a collection entry");
    std::optional<double> confidence;
    if (const json* value = optional(object, "confidence")) {
        confidence = asNumber(*value, "confidence");
    }
    return CollectionEntry{
        .id = asUuid(required(object, "id"), "id"),
        .specimenID = optionalString(object, "specimenID"),
        .name = asString(required(object, "name"), "name"),
        .dateAdded = asDate(required(object, "dateAdded"), "dateAdded"),
        .acquisition = asString(required(object, "acquisition"), "acquisition"),
        .location = asString(required(object, "location"), "location"),
        .notes = asString(required(object, "notes"), "notes"),
        .confidence = confidence,
        .photoFile = optionalString(object, "photoFile"),
        .isSample = optionalBool(object, "isSample"),
        .sampleID = optionalString(object, "sampleID"),
    };
}

HistoryEntry::Result readHistoryResult(const json& object) {
    requireObject(object, "a history result");
    return HistoryEntry::Result{
        .specimenID = asString(required(object, "specimenID"), "specimenID"),
        .confidence = asNumber(required(object, "confidence"), "confidence"),
    };
}

HistoryEntry readHistoryEntry(const json& object) {
    requireObject(object, "a history entry");
    const json& results = requireArray(required(object, "results"), "results");
    std::vector<HistoryEntry::Result> readResults;
    readResults.reserve(results.size());
    for (const json& result : results) {
        readResults.push_back(readHistoryResult(result));
    }
    return HistoryEntry{
        .id = asUuid(required(object, "id"), "id"),
        .date = asDate(required(object, "date"), "date"),
        .answers = stringList(required(object, "answers"), "answers"),
        .results = std::move(readResults),
        .level = asString(required(object, "level"), "level"),
        .photoFile = optionalString(object, "photoFile"),
        .isSample = optionalBool(object, "isSample"),
    };
}

// Reads every element of a list, naming the failing one ("collection[3]: ...").
template <class Record, class Reader>
std::vector<Record> readList(const json& value, const char* key, Reader read) {
    std::vector<Record> list;
    list.reserve(requireArray(value, key).size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        try {
            list.push_back(read(value[i]));
        } catch (const FormatFault& fault) {
            throw FormatFault{std::string(key) + "[" + std::to_string(i) + "]: " + fault.message};
        }
    }
    return list;
}

// Read but not checked; a number out of int range is kept as 0 rather than overflowing.
int asVersion(const json& value) {
    double version = asNumber(value, "version");
    return version >= INT_MIN && version <= INT_MAX ? static_cast<int>(version) : 0;
}

StoneDataFile readDataFile(const json& object) {
    requireObject(object, "the data file");
    return StoneDataFile{
        .version = asVersion(required(object, "version")),
        .collection = readList<CollectionEntry>(required(object, "collection"), "collection",
                                                readCollectionEntry),
        .history = readList<HistoryEntry>(required(object, "history"), "history", readHistoryEntry),
        .favorites = stringList(required(object, "favorites"), "favorites"),
    };
}

// The one place that turns a reader's fault, or a surprise from the JSON library, into an
// error value.
template <class T, class Reader> quarrydex::Result<T> guarded(Reader read) {
    try {
        return read();
    } catch (const FormatFault& fault) {
        return Error{fault.message};
    } catch (const json::exception& e) {
        return Error{e.what()};
    }
}

bool finite(const StoneDataFile& file) {
    for (const CollectionEntry& e : file.collection) {
        if (!std::isfinite(e.dateAdded.sinceReference) ||
            (e.confidence && !std::isfinite(*e.confidence))) {
            return false;
        }
    }
    for (const HistoryEntry& e : file.history) {
        if (!std::isfinite(e.date.sinceReference)) {
            return false;
        }
        for (const HistoryEntry::Result& r : e.results) {
            if (!std::isfinite(r.confidence)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

// Objects are std::map underneath, so the keys come out in byte order whatever the order
// of the assignments below.

json CollectionEntry::toJson() const {
    json object = json::object();
    object["id"] = id.text();
    if (specimenID) {
        object["specimenID"] = *specimenID;
    }
    object["name"] = name;
    object["dateAdded"] = dateAdded.sinceReference;
    object["acquisition"] = acquisition;
    object["location"] = location;
    object["notes"] = notes;
    if (confidence) {
        object["confidence"] = *confidence;
    }
    if (photoFile) {
        object["photoFile"] = *photoFile;
    }
    if (isSample) {
        object["isSample"] = *isSample;
    }
    if (sampleID) {
        object["sampleID"] = *sampleID;
    }
    return object;
}

quarrydex::Result<CollectionEntry> CollectionEntry::fromJson(const json& object) {
    return guarded<CollectionEntry>([&] { return readCollectionEntry(object); });
}

json HistoryEntry::toJson() const {
    json object = json::object();
    object["id"] = id.text();
    object["date"] = date.sinceReference;
    object["answers"] = answers;
    json list = json::array();
    for (const Result& r : results) {
        list.push_back(json{{"specimenID", r.specimenID}, {"confidence", r.confidence}});
    }
    object["results"] = std::move(list);
    object["level"] = level;
    if (photoFile) {
        object["photoFile"] = *photoFile;
    }
    if (isSample) {
        object["isSample"] = *isSample;
    }
    return object;
}

quarrydex::Result<HistoryEntry> HistoryEntry::fromJson(const json& object) {
    return guarded<HistoryEntry>([&] { return readHistoryEntry(object); });
}

json StoneDataFile::toJson() const {
    json collectionList = json::array();
    for (const CollectionEntry& e : collection) {
        collectionList.push_back(e.toJson());
    }
    json historyList = json::array();
    for (const HistoryEntry& e : history) {
        historyList.push_back(e.toJson());
    }
    json object = json::object();
    object["version"] = 1;
    object["collection"] = std::move(collectionList);
    object["history"] = std::move(historyList);
    object["favorites"] = favorites;
    return object;
}

Result<StoneDataFile> StoneDataFile::fromJson(const json& object) {
    return guarded<StoneDataFile>([&] { return readDataFile(object); });
}

Result<std::string> StoneDataFile::encode() const {
    if (!finite(*this)) {
        return Error{"a date or confidence is not a finite number"};
    }
    return guarded<std::string>([&] {
        // Doubles are written in shortest round-trip form, so dates read back bit for bit.
        std::string text = toJson().dump(2, ' ', false, json::error_handler_t::replace);
        text += '\n';
        return text;
    });
}

Result<StoneDataFile> StoneDataFile::decode(std::string_view text) {
    return guarded<StoneDataFile>([&] {
        json object = json::parse(text, nullptr, false);
        if (object.is_discarded()) {
            throw FormatFault{"the file is not valid JSON"};
        }
        return readDataFile(object);
    });
}

} // namespace quarrydex
