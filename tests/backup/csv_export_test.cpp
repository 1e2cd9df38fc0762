#include "backup/backup_archive.h"
#include "backup_test_data.h"
#include "library/specimen_library.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {
using test::at;
using test::TempDir;

SpecimenLibrary library() {
    Specimen quartz = test::makeSpecimen("quartz", "Quartz");
    Specimen opal = test::makeSpecimen("opal", "Opal");
    opal.category = SpecimenCategory::gemstone;
    return SpecimenLibrary({quartz, opal});
}

// Commas, quotes and line feeds are quoted with inner quotes doubled; nothing else is, not
// even a carriage return.
TEST(EscapeCSV, only_commas_quotes_and_line_feeds_are_quoted) {
    const std::pair<const char*, const char*> cases[] = {
        {"Comma, \"quote\"", "\"Comma, \"\"quote\"\"\""},
        {"a,b", "\"a,b\""},
        {"two\nlines", "\"two\nlines\""},
        {"", ""},
        {"carriage\rreturn", "carriage\rreturn"},
        {"semi;colon 'single' \u00E9", "semi;colon 'single' \u00E9"},
    };
    for (const auto& [field, escaped] : cases) {
        EXPECT_EQ(BackupCodec::escapeCSV(field), escaped) << field;
    }
}

TEST(CollectionCSV, an_empty_collection_is_the_header_and_a_line_feed) {
    TempDir dir;
    StoneStore store(dir.path());
    EXPECT_EQ(BackupCodec::csv(store, library()),
              "Name,Species,Category,Acquired,Date,Location,Notes\n");
}

TEST(CollectionCSV, entries_come_in_store_order_with_every_field_escaped) {
    TempDir dir;
    StoneStore store(dir.path());
    CollectionEntry traded = test::piece("Opal, fire", "2026-10-18T23:59:59Z");
    traded.specimenID = "opal";
    traded.acquisition = "traded";
    traded.location = "Coober Pedy";
    traded.notes = "Comma, \"quote\"";
    CollectionEntry unknownWord = test::piece("Clear point", "2026-10-17T00:00:00Z");
    unknownWord.specimenID = "quartz";
    unknownWord.acquisition = "stolen";
    unknownWord.notes = "line one\nline two\rstill two";
    CollectionEntry freelyNamed = test::piece("Mystery", "2026-10-16T12:00:00Z");
    freelyNamed.specimenID = "not-in-library";
    freelyNamed.acquisition = "gift";
    CollectionEntry noSpecies = test::piece("Pebble", "2026-10-15T12:00:00Z");
    noSpecies.acquisition = "bought";
    for (const CollectionEntry* e : {&noSpecies, &freelyNamed, &unknownWord, &traded}) {
        store.add(*e);
    }

    // The date is the UTC calendar day, whatever the local zone says.
    test::ScopedEnv zone("TZ", "<+10>-10");
    EXPECT_EQ(BackupCodec::csv(store, library()),
              "Name,Species,Category,Acquired,Date,Location,Notes\n"
              "\"Opal, fire\",Opal,Gemstone,Traded,2026-10-18,Coober Pedy,"
              "\"Comma, \"\"quote\"\"\"\n"
              "Clear point,Quartz,Mineral,Found,2026-10-17,Quarry road,"
              "\"line one\nline two\rstill two\"\n"
              "Mystery,,,Gift,2026-10-16,Quarry road,\n"
              "Pebble,,,Bought,2026-10-15,Quarry road,\n");
}

// An edited data file may hold any number as a date; the column shows the nearer end of the
// years 1 to 9999, as the backup does, rather than nothing.
TEST(CollectionCSV, a_date_beyond_years_1_to_9999_shows_the_nearer_end) {
    TempDir dir;
    StoneStore store(dir.path());
    CollectionEntry future = test::piece("Future", "2026-10-18T00:00:00Z");
    future.dateAdded = Timestamp{1e300};
    CollectionEntry past = test::piece("Past", "2026-10-18T00:00:00Z");
    past.dateAdded = Timestamp{-1e300};
    store.add(past);
    store.add(future);
    EXPECT_EQ(BackupCodec::csv(store, library()),
              "Name,Species,Category,Acquired,Date,Location,Notes\n"
              "Future,,,Found,9999-12-31,Quarry road,\n"
              "Past,,,Found,0001-01-01,Quarry road,\n");
}

} // namespace
} // namespace quarrydex
