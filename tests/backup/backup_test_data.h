#pragma once
// Records and stores shared by the backup tests.

#include "backup/backup_archive.h"
#include "store/stone_store.h"

#include <gtest/gtest.h>
#include <string>

namespace quarrydex::test {

// Every byte value, so a photo that comes back equal came back byte for byte.
inline std::string allBytes(std::size_t repeat = 1) {
    std::string bytes;
    for (std::size_t r = 0; r < repeat; ++r) {
        for (int b = 0; b < 256; ++b) {
            bytes.push_back(static_cast<char>(b));
        }
    }
    return bytes;
}

inline Timestamp at(const char* iso) {
    return *Timestamp::parseIsoUtc(iso);
}

// An archive that uses every field, with text that needs escaping.
inline BackupArchive fullArchive() {
    BackupArchive a;
    a.publisher = "Fernwick";
    a.createdAt = at("2026-10-18T12:00:00Z");

    BackupArchive::Entry quartz;
    quartz.id = *Uuid::parse("1F0C2E5A-9B7D-4C3E-8A61-2D4B6F8091AB");
    quartz.specimenID = "quartz";
    quartz.name = "Smoky \"quartz\", big";
    quartz.dateAdded = at("2026-10-18T11:00:00Z");
    quartz.acquisition = "bought";
    quartz.location = "Ærø, Danmark \u2014 \U0001F48E";
    quartz.notes = "Line one\nline two\r\ttab \\ slash / and \x01 control";
    quartz.confidence = 0.8734567890123;
    quartz.photo = allBytes(3) + "tail";
    BackupArchive::Entry plain;
    plain.id = *Uuid::parse("2A4C6E80-1B3D-4F57-9A1C-3E5F7092B4D6");
    plain.name = "Pebble";
    plain.dateAdded = at("2025-01-02T03:04:05Z");
    plain.acquisition = "stolen"; // an unknown word survives as text
    plain.location = "Found by the creek";
    a.items = {quartz, plain};

    BackupArchive::HistoryItem seen;
    seen.id = *Uuid::parse("3B5D7F91-2C4E-4068-8B2D-4F6081A3C5E7");
    seen.date = at("2026-10-17T09:30:00Z");
    seen.answers = {"Colour: white", "Fizz: fizzes"};
    seen.results = {{"calcite", 0.61}, {"aragonite", 0.2}, {"dolomite", 1}};
    seen.level = "likely";
    seen.photo = std::string("\xFF\xD8\xFF\xE0", 4);
    BackupArchive::HistoryItem bare;
    bare.id = *Uuid::parse("4C6E8002-3D5F-4179-9C3E-5071A2B4D6F8");
    bare.date = at("2026-10-16T00:00:00Z");
    bare.level = "roughGuess";
    a.history = std::vector{seen, bare};
    a.favorites = std::vector<std::string>{"quartz", "pyrite"};
    return a;
}

inline CollectionEntry piece(const std::string& name, const char* date) {
    CollectionEntry e;
    e.name = name;
    e.location = "Quarry road";
    e.dateAdded = at(date);
    return e;
}

// A store holding two collection pieces (one with a photo), two history entries (one with
// a photo) and two favorites, all on whole-second dates.
inline void fillStore(StoneStore& store) {
    CollectionEntry bought = piece("Amethyst geode", "2026-10-10T10:00:00Z");
    bought.specimenID = "amethyst";
    bought.acquisition = "bought";
    bought.notes = "Comma, \"quote\"";
    bought.confidence = 0.42;
    bought.photoFile = store.storePhoto(allBytes(2), bought.id);
    CollectionEntry found = piece("Creek pebble", "2026-10-12T08:00:00Z");
    found.location = "Found by the creek";
    found.isSample = true;
    found.sampleID = "sample-pebble";
    store.add(bought);
    store.add(found);

    HistoryEntry first;
    first.date = at("2026-10-11T12:00:00Z");
    first.answers = {"Luster: glassy"};
    first.results = {{"amethyst", 0.7}, {"quartz", 0.3}};
    first.level = "likely";
    first.photoFile = store.storePhoto("history photo", first.id);
    HistoryEntry second;
    second.date = at("2026-10-13T12:00:00Z");
    second.level = "roughGuess";
    second.isSample = true;
    store.addHistory(first);
    store.addHistory(second);

    store.toggleFavorite("amethyst");
    store.toggleFavorite("gold");
    ASSERT_FALSE(store.lastError()) << *store.lastError();
}

} // namespace quarrydex::test
