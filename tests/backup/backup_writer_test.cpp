#include "backup/backup_archive.h"
#include "backup_test_data.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::at;
using test::namesIn;
using test::TempDir;

class WriteBackup : public ::testing::Test {
protected:
    WriteBackup() : store(dir / "data") { test::fillStore(store); }

    TempDir dir;
    StoneStore store;
    Timestamp date = at("2026-10-18T14:05:09Z");
};

// A missing folder is made; a file in the way is reported with the system error.
TEST_F(WriteBackup, creates_a_missing_folder_and_writes_the_encoded_archive_in_a_dated_file) {
    fs::path folder = dir / "FlashDrive" / "Quarrydex Backups";
    Result<fs::path> written = BackupCodec::writeBackup(store, folder, date);
    ASSERT_TRUE(written) << written.error();
    EXPECT_EQ(*written, folder / "Quarrydex Backup 2026-10-18 14.05.09.json");
    EXPECT_EQ(namesIn(folder), std::set<std::string>{"Quarrydex Backup 2026-10-18 14.05.09.json"});
    EXPECT_EQ(test::readFile(*written),
              BackupCodec::encode(BackupCodec::makeArchive(store, true, date)));

    test::writeFile(dir / "FlashDrive2", "a file, not a drive");
    written = BackupCodec::writeBackup(store, dir / "FlashDrive2" / "Backups", date);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "Not a directory");
}

// Hand-edited dates beyond what ISO 8601 text holds come back as the nearer end of the
// years 1 to 9999 instead of failing every backup's verification.
TEST(WriteBackupDates, dates_beyond_years_1_to_9999_back_up_as_the_nearer_end_and_verify) {
    TempDir dir;
    fs::create_directories(dir / "data");
    test::writeFile(dir / "data" / "quarrydex-data.json", R"({"collection": [
        {"acquisition": "found", "dateAdded": 1e300, "id": "1F0C2E5A-9B7D-4C3E-8A61-2D4B6F8091AB",
         "location": "", "name": "Far future", "notes": ""},
        {"acquisition": "found", "dateAdded": -1e300, "id": "2A4C6E80-1B3D-4F57-9A1C-3E5F7092B4D6",
         "location": "", "name": "Far past", "notes": ""}],
      "favorites": [], "history": [{"answers": [], "date": 4e18,
        "id": "3B5D7F91-2C4E-4068-8B2D-4F6081A3C5E7", "level": "likely", "results": []}],
      "version": 1})");
    StoneStore store(dir / "data");
    ASSERT_FALSE(store.lastError()) << *store.lastError();
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "backups", Timestamp::now());
    ASSERT_TRUE(written) << written.error();
    BackupResult<BackupArchive> back = BackupCodec::decode(test::readFile(*written));
    ASSERT_TRUE(back) << back.description();
    ASSERT_EQ(back->items.size(), 2u);
    ASSERT_EQ(back->history->size(), 1u);
    EXPECT_EQ(back->items[0].dateAdded.isoUtc(), "9999-12-31T23:59:59Z");
    EXPECT_EQ(back->items[1].dateAdded.isoUtc(), "0001-01-01T00:00:00Z");
    EXPECT_EQ((*back->history)[0].date.isoUtc(), "9999-12-31T23:59:59Z");
}

TEST_F(WriteBackup, a_missing_photo_file_is_left_out_and_the_backup_still_verifies) {
    fs::remove(store.photosFolder() / *store.collection()[1].photoFile);
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date);
    ASSERT_TRUE(written) << written.error();
    BackupResult<BackupArchive> decoded = BackupCodec::decode(test::readFile(*written));
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_FALSE(decoded->items[1].photo);
    EXPECT_EQ((*decoded->history)[1].photo, "history photo");
}

TEST_F(WriteBackup, two_backups_in_the_same_second_leave_one_file_the_later) {
    ASSERT_TRUE(BackupCodec::writeBackup(store, dir / "out", date));
    store.toggleFavorite("opal");
    Result<fs::path> later = BackupCodec::writeBackup(store, dir / "out", date.plusSeconds(0.5));
    ASSERT_TRUE(later) << later.error();
    ASSERT_EQ(namesIn(dir / "out").size(), 1u);
    BackupResult<BackupArchive> decoded = BackupCodec::decode(test::readFile(*later));
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_EQ(decoded->favorites->back(), "opal");
}

TEST_F(WriteBackup, a_full_disk_leaves_no_file_and_an_earlier_backup_of_that_name_untouched) {
    BackupWriteOptions full;
    full.file.failAfterBytes = 300;
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date, full);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "No space left on device");
    EXPECT_TRUE(namesIn(dir / "out").empty()) << "no partial or temporary file";

    Result<fs::path> first = BackupCodec::writeBackup(store, dir / "out", date);
    ASSERT_TRUE(first) << first.error();
    std::string before = test::readFile(*first);
    store.toggleFavorite("opal");
    full.file.failAfterBytes = 10;
    ASSERT_FALSE(BackupCodec::writeBackup(store, dir / "out", date, full));
    EXPECT_EQ(test::readFile(*first), before);
    EXPECT_EQ(namesIn(dir / "out").size(), 1u);
}

// A file damaged after writing fails with the decoding error; one that reads back with
// another item count fails verification.
TEST_F(WriteBackup, a_file_that_does_not_read_back_as_written_fails) {
    BackupWriteOptions options;
    options.afterWrite = [](const fs::path& file) {
        std::string bytes = test::readFile(file);
        test::writeFile(file, bytes.substr(0, bytes.size() / 2));
    };
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date, options);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "That file isn't a Quarrydex backup.");

    options.afterWrite = [&](const fs::path& file) {
        BackupArchive archive = BackupCodec::makeArchive(store, true, date);
        archive.items.pop_back();
        test::writeFile(file, BackupCodec::encode(archive));
    };
    written = BackupCodec::writeBackup(store, dir / "out", date, options);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "The backup couldn't be read: Verification failed after writing.");
}

} // namespace
} // namespace quarrydex
