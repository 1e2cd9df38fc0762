#include "backup/backup_archive.h"
#include "backup_test_data.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::at;
using test::TempDir;

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class WriteBackup : public ::testing::Test {
protected:
    WriteBackup() : store(dir / "data") { test::fillStore(store); }

    TempDir dir;
    StoneStore store;
    Timestamp date = at("2026-10-18T14:05:09Z");
};

TEST_F(WriteBackup, creates_a_missing_folder_and_writes_a_dated_file_that_verifies) {
    fs::path folder = dir / "FlashDrive" / "Quarrydex Backups";
    Result<fs::path> written = BackupCodec::writeBackup(store, folder, date);
    ASSERT_TRUE(written) << written.error();
    EXPECT_EQ(*written, folder / "Quarrydex Backup 2026-10-18 14.05.09.json");
    EXPECT_EQ(namesIn(folder),
              (std::vector<std::string>{"Quarrydex Backup 2026-10-18 14.05.09.json"}));
}

TEST_F(WriteBackup, the_file_is_the_encoded_archive_with_every_photo) {
    Result<fs::path> written = BackupCodec::writeBackup(store, dir.path(), date);
    ASSERT_TRUE(written) << written.error();
    EXPECT_EQ(test::readFile(*written),
              BackupCodec::encode(BackupCodec::makeArchive(store, true, date)));
}

TEST_F(WriteBackup, an_empty_collection_still_verifies) {
    StoneStore empty(dir / "empty");
    Result<fs::path> written = BackupCodec::writeBackup(empty, dir / "out", date);
    ASSERT_TRUE(written) << written.error();
    BackupResult<BackupArchive> decoded = BackupCodec::decode(test::readFile(*written));
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_TRUE(decoded->items.empty());
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

TEST_F(WriteBackup, a_full_disk_leaves_no_file_and_reports_the_system_error) {
    BackupWriteOptions options;
    options.file.failAfterBytes = 300;
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date, options);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "No space left on device");
    EXPECT_TRUE(namesIn(dir / "out").empty()) << "no partial or temporary file";
}

TEST_F(WriteBackup, a_failed_write_leaves_an_earlier_backup_of_that_name_untouched) {
    Result<fs::path> first = BackupCodec::writeBackup(store, dir / "out", date);
    ASSERT_TRUE(first) << first.error();
    std::string before = test::readFile(*first);
    store.toggleFavorite("opal");
    BackupWriteOptions options;
    options.file.failAfterBytes = 10;
    ASSERT_FALSE(BackupCodec::writeBackup(store, dir / "out", date, options));
    EXPECT_EQ(test::readFile(*first), before);
    EXPECT_EQ(namesIn(dir / "out").size(), 1u);
}

TEST_F(WriteBackup, a_folder_that_cannot_be_made_reports_the_system_error) {
    test::writeFile(dir / "FlashDrive", "a file, not a drive");
    Result<fs::path> written =
        BackupCodec::writeBackup(store, dir / "FlashDrive" / "Backups", date);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "Not a directory");
}

TEST_F(WriteBackup, a_file_damaged_after_writing_fails_with_the_decoding_error) {
    BackupWriteOptions options;
    options.afterWrite = [](const fs::path& file) {
        std::string bytes = test::readFile(file);
        test::writeFile(file, bytes.substr(0, bytes.size() / 2));
    };
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date, options);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "That file isn't a Quarrydex backup.");
}

TEST_F(WriteBackup, a_read_back_with_a_different_item_count_fails_verification) {
    BackupWriteOptions options;
    options.afterWrite = [&](const fs::path& file) {
        BackupArchive archive = BackupCodec::makeArchive(store, true, date);
        archive.items.pop_back();
        test::writeFile(file, BackupCodec::encode(archive));
    };
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "out", date, options);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), "The backup couldn't be read: Verification failed after writing.");
}

} // namespace
} // namespace quarrydex
