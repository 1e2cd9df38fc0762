#include "backup/backup_archive.h"
#include "backup_test_data.h"
#include "library/specimen_library.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <time.h>

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

TEST(EscapeCSV, commas_quotes_and_line_feeds_are_quoted_with_inner_quotes_doubled) {
    EXPECT_EQ(BackupCodec::escapeCSV("Comma, \"quote\""), "\"Comma, \"\"quote\"\"\"");
    EXPECT_EQ(BackupCodec::escapeCSV("a,b"), "\"a,b\"");
    EXPECT_EQ(BackupCodec::escapeCSV("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(BackupCodec::escapeCSV("two\nlines"), "\"two\nlines\"");
}

TEST(EscapeCSV, other_fields_are_unchanged_even_with_a_carriage_return) {
    EXPECT_EQ(BackupCodec::escapeCSV("Plain name"), "Plain name");
    EXPECT_EQ(BackupCodec::escapeCSV(""), "");
    EXPECT_EQ(BackupCodec::escapeCSV("carriage\rreturn"), "carriage\rreturn");
    EXPECT_EQ(BackupCodec::escapeCSV("semi;colon 'single' \u00E9"), "semi;colon 'single' \u00E9");
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
    std::string saved = std::getenv("TZ") ? std::getenv("TZ") : "";
    ::setenv("TZ", "<+10>-10", 1);
    ::tzset();
    std::string csv = BackupCodec::csv(store, library());
    ::setenv("TZ", saved.c_str(), 1);
    ::tzset();

    EXPECT_EQ(csv, "Name,Species,Category,Acquired,Date,Location,Notes\n"
                   "\"Opal, fire\",Opal,Gemstone,Traded,2026-10-18,Coober Pedy,"
                   "\"Comma, \"\"quote\"\"\"\n"
                   "Clear point,Quartz,Mineral,Found,2026-10-17,Quarry road,"
                   "\"line one\nline two\rstill two\"\n"
                   "Mystery,,,Gift,2026-10-16,Quarry road,\n"
                   "Pebble,,,Bought,2026-10-15,Quarry road,\n");
}

} // namespace
} // namespace quarrydex
