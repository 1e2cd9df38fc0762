#include "store/acquisition.h"
#include "store/records.h"
#include "support/temp_dir.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace quarrydex {
namespace {
using json = nlohmann::json;
using test::fixture;
using test::readFile;

Uuid uuid(const char* text) {
    return *Uuid::parse(text);
}

CollectionEntry entry(std::string name, std::string location) {
    CollectionEntry e;
    e.name = std::move(name);
    e.location = std::move(location);
    return e;
}

// A file with every optional field set somewhere and left out somewhere else.
StoneDataFile sampleFile() {
    StoneDataFile file;
    CollectionEntry full = entry("Quartz point", "Aunt's garden");
    full.id = uuid("11111111-2222-4333-8444-555555555555");
    full.specimenID = "quartz";
    full.dateAdded = Timestamp{782000000.125};
    full.acquisition = "gift";
    full.notes = "Clear tip\nslightly chipped";
    full.confidence = 0.8125;
    full.photoFile = "11111111-2222-4333-8444-555555555555.jpg";
    full.isSample = true;
    full.sampleID = "sample-quartz";
    file.collection.push_back(full);

    CollectionEntry bare = entry("Grey pebble", "Beach");
    bare.id = uuid("AAAAAAAA-BBBB-4CCC-8DDD-EEEEEEEEEEEE");
    bare.dateAdded = Timestamp{-3600.5};
    file.collection.push_back(bare);

    HistoryEntry history;
    history.id = uuid("99999999-8888-4777-8666-555555555555");
    history.date = Timestamp{782000100};
    history.answers = {"Colour: white", "Luster: glassy"};
    history.results = {{"quartz", 0.625}, {"calcite", 0.25}};
    history.level = "likely";
    history.photoFile = "11111111-2222-4333-8444-555555555555.jpg";
    file.history.push_back(history);

    file.favorites = {"quartz", "pyrite"};
    return file;
}

// The exact text is part of the format: keys sorted in byte order, two-space indentation,
// dates as numbers, no nulls.
TEST(Records, file_with_every_field_is_written_byte_for_byte_and_reads_back_equal) {
    auto text = sampleFile().encode();
    ASSERT_TRUE(text) << text.error();
    EXPECT_EQ(*text, readFile(fixture("store/written.json")));
    auto back = StoneDataFile::decode(*text);
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(*back, sampleFile());
}

TEST(Records, hand_written_file_with_integer_dates_unknown_words_and_keys_loads) {
    auto read = StoneDataFile::decode(readFile(fixture("store/handwritten.json")));
    ASSERT_TRUE(read) << read.error();
    const CollectionEntry& entry = read->collection.at(0);
    EXPECT_EQ(entry.acquisition, "stolen");
    EXPECT_EQ(Acquisition::fromRaw(entry.acquisition), std::nullopt);
    EXPECT_EQ(entry.dateAdded.sinceReference, 5.0);
    EXPECT_EQ(entry.location, "Mill creek/lower bank");
    EXPECT_EQ(entry.notes, "two lines:\nsecond");
    EXPECT_EQ(entry.id.text(), "6F1C1D2E-3B4A-4C5D-8E9F-0A1B2C3D4E5F"); // read in lower case
    EXPECT_EQ(entry.isSample, std::nullopt);

    const HistoryEntry& history = read->history.at(0);
    EXPECT_TRUE(history.results.empty());
    EXPECT_TRUE(history.answers.empty());
    EXPECT_EQ(history.isSample, true);
    EXPECT_EQ(read->favorites, (std::vector<std::string>{"quartz", "pyrite"}));

    // Written back: the unknown word kept, the id in upper case, the unknown keys gone.
    auto written = read->encode();
    ASSERT_TRUE(written) << written.error();
    json object = json::parse(*written);
    EXPECT_EQ(object["collection"][0]["acquisition"], "stolen");
    EXPECT_EQ(object["collection"][0]["id"], "6F1C1D2E-3B4A-4C5D-8E9F-0A1B2C3D4E5F");
    EXPECT_FALSE(object.contains("writtenBy") || object["collection"][0].contains("rating"));
}

TEST(Records, dates_and_confidences_read_back_bit_for_bit) {
    StoneDataFile file;
    const std::vector<double> values = {0.0,
                                        -0.0,
                                        0.1,
                                        1e-300,
                                        5e-324,
                                        Timestamp::latest,
                                        -3600.5,
                                        2e9 / 3,
                                        782000000.123456789,
                                        Timestamp::earliest};
    for (double v : values) {
        CollectionEntry e = entry("n", "l");
        e.dateAdded = Timestamp{v};
        e.confidence = v;
        file.collection.push_back(e);
    }
    file.collection[0].confidence = 1.7976931348623157e308;
    auto text = file.encode();
    ASSERT_TRUE(text) << text.error();
    auto back = StoneDataFile::decode(*text);
    ASSERT_TRUE(back) << back.error();
    for (std::size_t i = 0; i < values.size(); ++i) {
        double date = back->collection[i].dateAdded.sinceReference;
        EXPECT_EQ(std::memcmp(&date, &values[i], sizeof date), 0) << values[i];
        EXPECT_EQ(back->collection[i].confidence, file.collection[i].confidence);
    }
}

// Only by editing the file: dates beyond the years 1 to 9999 read as the nearer end of that
// range, and are saved that way.
TEST(Records, dates_outside_years_1_to_9999_are_clamped_when_read) {
    json object = sampleFile().toJson();
    std::string text = object.dump();
    auto replace = [&](const std::string& from, const std::string& to) {
        std::size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    };
    replace("782000000.125", "1e300");
    replace("-3600.5", "-1.7976931348623157e308");
    replace("782000100", "-63113904001");
    auto read = StoneDataFile::decode(text);
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read->collection[0].dateAdded.sinceReference, Timestamp::latest);
    EXPECT_EQ(read->collection[1].dateAdded.sinceReference, Timestamp::earliest);
    EXPECT_EQ(read->history[0].date.sinceReference, Timestamp::earliest);

    auto saved = read->encode();
    ASSERT_TRUE(saved) << saved.error();
    EXPECT_NE(saved->find("\"dateAdded\": 252423993599.0"), std::string::npos) << *saved;
    EXPECT_NE(saved->find("\"dateAdded\": -63113904000.0"), std::string::npos) << *saved;
}

// Each fault in a single record fails the whole file: there is no per-record recovery.
TEST(Records, any_fault_in_one_record_makes_the_whole_file_unreadable) {
    std::vector<std::pair<std::string, std::function<void(json&)>>> faults = {
        {"ill-formed id", [](json& f) { f["collection"][1]["id"] = "AAAAAAAA-BBBB-4CCC-8DDD"; }},
        {"id with stray text",
         [](json& f) { f["collection"][0]["id"] = "{11111111-2222-4333-8444-555555555555}"; }},
        {"date as text", [](json& f) { f["collection"][0]["dateAdded"] = "2026-01-01T00:00:00Z"; }},
        {"name as number", [](json& f) { f["collection"][0]["name"] = 7; }},
        {"null optional", [](json& f) { f["collection"][1]["specimenID"] = nullptr; }},
        {"isSample as text", [](json& f) { f["collection"][0]["isSample"] = "true"; }},
        {"confidence as text", [](json& f) { f["collection"][0]["confidence"] = "high"; }},
        {"entry not an object", [](json& f) { f["collection"][1] = json::array(); }},
        {"result without confidence",
         [](json& f) { f["history"][0]["results"][1].erase("confidence"); }},
        {"answer as number", [](json& f) { f["history"][0]["answers"].push_back(3); }},
        {"version as text", [](json& f) { f["version"] = "1"; }},
        {"top level an array", [](json& f) { f = json::array({f}); }},
    };
    for (const char* key : {"version", "collection", "history", "favorites"}) {
        faults.push_back({std::string("file without ") + key, [key](json& f) { f.erase(key); }});
    }
    for (const char* key : {"id", "name", "dateAdded", "acquisition", "location", "notes"}) {
        faults.push_back({std::string("entry without ") + key,
                          [key](json& f) { f["collection"][1].erase(key); }});
    }
    for (const char* key : {"results", "level", "date"}) {
        faults.push_back({std::string("history without ") + key,
                          [key](json& f) { f["history"][0].erase(key); }});
    }
    for (const auto& [what, fault] : faults) {
        json object = sampleFile().toJson();
        fault(object);
        EXPECT_FALSE(StoneDataFile::decode(object.dump())) << what;
    }
    const std::string whole = sampleFile().toJson().dump();
    for (std::string text :
         {std::string(), std::string("null"), std::string("{\"version\": 1e999}"),
          whole.substr(0, whole.size() / 2)}) {
        EXPECT_FALSE(StoneDataFile::decode(text)) << text;
    }
}

// A name from a file system in another encoding must not make every later save fail: the
// bad bytes become U+FFFD. JSON cannot hold NaN, and writing null instead would make the next
// load fail as a whole, so it refuses to encode.
TEST(Records, bad_utf8_is_replaced_and_a_number_that_is_not_finite_refuses_to_encode) {
    StoneDataFile file;
    file.collection.push_back(entry("Fl\xFFuorite", "x"));
    auto text = file.encode();
    ASSERT_TRUE(text) << text.error();
    auto back = StoneDataFile::decode(*text);
    ASSERT_TRUE(back) << back.error();
    EXPECT_EQ(back->collection[0].name, "Fl\xEF\xBF\xBDuorite");

    file.collection[0].confidence = std::numeric_limits<double>::quiet_NaN();
    text = file.encode();
    ASSERT_FALSE(text);
    EXPECT_EQ(text.error(), "a date or confidence is not a finite number");
}

} // namespace
} // namespace quarrydex
