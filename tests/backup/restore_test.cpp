#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "backup_test_data.h"
#include "support/temp_dir.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::at;
using test::TempDir;

// What a collection entry looks like once it went through a backup: no photo file name
// and no sample marks.
CollectionEntry asRestored(CollectionEntry entry) {
    entry.photoFile.reset();
    entry.isSample.reset();
    entry.sampleID.reset();
    return entry;
}

HistoryEntry asRestored(HistoryEntry entry) {
    entry.photoFile.reset();
    entry.isSample.reset();
    return entry;
}

class Restore : public ::testing::Test {
protected:
    Restore() : original(originalDir.path()), restored(restoredDir.path()) {
        test::fillStore(original);
    }

    BackupArchive backup() { return BackupCodec::makeArchive(original, true, Timestamp::now()); }

    TempDir originalDir;
    TempDir restoredDir;
    StoneStore original;
    StoneStore restored;
};

// Through the file, as the backup screen does it; photos land under their record's own id
// and restored sample pieces are the user's own.
TEST_F(Restore, into_an_empty_store_adds_everything_and_it_survives_a_restart) {
    BackupResult<BackupArchive> decoded = BackupCodec::decode(BackupCodec::encode(backup()));
    ASSERT_TRUE(decoded) << decoded.description();
    RestoreReport report = BackupCodec::restore(*decoded, restored);
    EXPECT_EQ(report, (RestoreReport{2, 2, 2, 0}));
    EXPECT_FALSE(restored.lastError()) << *restored.lastError();
    const CollectionEntry& withPhoto = restored.collection()[1];
    EXPECT_EQ(withPhoto.photoFile, withPhoto.id.text() + ".jpg");
    EXPECT_FALSE(restored.collection()[0].photoFile) << "a record without photo gets none";
    EXPECT_FALSE(restored.hasSamples());
    EXPECT_EQ(restored.removeSamples(), 0);

    StoneStore restarted(restoredDir.path());
    ASSERT_EQ(restarted.collection().size(), 2u);
    ASSERT_EQ(restarted.history().size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(asRestored(restarted.collection()[i]), asRestored(original.collection()[i]));
        EXPECT_EQ(restarted.photoData(restarted.collection()[i].photoFile),
                  original.photoData(original.collection()[i].photoFile));
        EXPECT_EQ(asRestored(restarted.history()[i]), asRestored(original.history()[i]));
        EXPECT_EQ(restarted.photoData(restarted.history()[i].photoFile),
                  original.photoData(original.history()[i].photoFile));
    }
    EXPECT_EQ(restarted.favorites(), original.favorites());
}

TEST_F(Restore, a_record_whose_id_is_already_here_is_left_untouched_even_if_it_differs) {
    BackupArchive archive = backup();
    (void)BackupCodec::restore(archive, restored);
    EXPECT_EQ(BackupCodec::restore(archive, restored), (RestoreReport{0, 0, 0, 4}));
    CollectionEntry before = restored.collection()[0];
    archive.items[0].name = "Renamed in the backup";
    archive.items.push_back(archive.items[1]);
    archive.items.back().id = Uuid::random(); // same content, new id: added
    RestoreReport report = BackupCodec::restore(archive, restored);
    EXPECT_EQ(report, (RestoreReport{1, 0, 0, 4}));
    EXPECT_EQ(restored.collection()[0], before);
    EXPECT_EQ(restored.collection().size(), 3u);
}

// Restored records sort in among the store's own, newest first; only new favorites count.
TEST_F(Restore, into_a_store_with_records_sorts_them_in_and_adds_only_new_favorites) {
    restored.add(test::piece("Newest", "2026-10-20T00:00:00Z"));
    restored.add(test::piece("Oldest", "2020-01-01T00:00:00Z"));
    restored.toggleFavorite("gold");
    BackupArchive archive = backup();
    archive.favorites->push_back("opal");
    archive.favorites->push_back("opal");
    EXPECT_EQ(BackupCodec::restore(archive, restored), (RestoreReport{2, 2, 2, 0}));
    std::vector<std::string> names;
    for (const CollectionEntry& e : restored.collection()) {
        names.push_back(e.name);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"Newest", "Creek pebble", "Amethyst geode", "Oldest"}));
    EXPECT_EQ(restored.favorites(), (std::vector<std::string>{"gold", "amethyst", "opal"}));
}

TEST_F(Restore, an_id_repeated_inside_one_backup_is_added_once) {
    BackupArchive archive = backup();
    archive.items.push_back(archive.items[0]);
    archive.items.back().name = "Second copy";
    RestoreReport report = BackupCodec::restore(archive, restored);
    EXPECT_EQ(report.collectionAdded, 2);
    EXPECT_EQ(report.skippedExisting, 1);
    EXPECT_EQ(restored.collection()[0].name, "Creek pebble");
}

TEST_F(Restore, a_photo_that_cannot_be_written_leaves_its_record_without_one) {
    // A regular file where the photo folder should be: no photo can be written (permission
    // bits would not stop the tests, which may run as root).
    fs::remove_all(restored.photosFolder());
    test::writeFile(restored.photosFolder(), "in the way");
    RestoreReport report = BackupCodec::restore(backup(), restored);
    EXPECT_EQ(report, (RestoreReport{2, 2, 2, 0}));
    ASSERT_TRUE(restored.lastError());
    EXPECT_TRUE(restored.lastError()->starts_with("Couldn't save the photo: "))
        << *restored.lastError();
    for (const CollectionEntry& e : restored.collection()) {
        EXPECT_FALSE(e.photoFile) << e.name;
    }
    for (const HistoryEntry& e : restored.history()) {
        EXPECT_FALSE(e.photoFile);
    }
    StoneStore restarted(restoredDir.path());
    EXPECT_EQ(restarted.collection().size(), 2u) << "the records were merged and saved";
}

TEST_F(Restore, from_a_file_photos_are_staged_and_nothing_is_left_behind) {
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(backup()));
    BackupResult<RestoreReport> report = BackupCodec::restoreFile(files / "backup.json", restored);
    ASSERT_TRUE(report) << report.description();
    EXPECT_EQ(*report, (RestoreReport{2, 2, 2, 0}));
    EXPECT_EQ(restored.photoData(restored.collection()[1].photoFile), test::allBytes(2));
    EXPECT_EQ(restored.photoData(restored.history()[1].photoFile), "history photo");
    EXPECT_EQ(test::namesIn(restoredDir.path()),
              (std::set<std::string>{"Photos", "quarrydex-data.json"}));
}

// "<id>.jpg" may already belong to a record: a history entry sharing a collection piece's
// id, by accident or in a crafted backup. Its photo must not be overwritten.
TEST_F(Restore, a_photo_name_already_used_by_a_record_is_never_overwritten) {
    CollectionEntry piece = test::piece("Own piece", "2026-10-01T00:00:00Z");
    piece.photoFile = restored.storePhoto("own photo", piece.id);
    restored.add(piece);

    BackupArchive archive = backup();
    (*archive.history)[0].id = piece.id;            // a history entry with the piece's id
    archive.items[0].id = (*archive.history)[1].id; // an item sharing a history entry's id
    archive.items[0].photo = "item photo";
    (*archive.history)[1].photo = "history photo";
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(archive));
    BackupResult<RestoreReport> report = BackupCodec::restoreFile(files / "backup.json", restored);
    ASSERT_TRUE(report) << report.description();
    EXPECT_FALSE(restored.lastError()) << *restored.lastError();

    std::set<std::string> names;
    auto photoOf = [&](const auto& list, const Uuid& id) {
        auto it = std::find_if(list.begin(), list.end(), [&](const auto& e) { return e.id == id; });
        EXPECT_NE(it, list.end());
        names.insert(it->photoFile.value_or(""));
        return restored.photoData(it->photoFile);
    };
    EXPECT_EQ(photoOf(restored.collection(), piece.id), "own photo");
    EXPECT_EQ(photoOf(restored.history(), piece.id), (*archive.history)[0].photo);
    EXPECT_EQ(photoOf(restored.collection(), archive.items[0].id), "item photo");
    EXPECT_EQ(photoOf(restored.history(), archive.items[0].id), "history photo");
    EXPECT_EQ(names.size(), 4u) << "four photos, four files";

    // The same from memory.
    TempDir otherDir;
    StoneStore other(otherDir.path());
    (void)BackupCodec::restore(archive, other);
    EXPECT_EQ(other.photoData(other.collection()[0].photoFile), "item photo");
    const HistoryEntry& sharing = other.history()[1];
    EXPECT_EQ(sharing.id, archive.items[0].id);
    EXPECT_EQ(other.photoData(sharing.photoFile), "history photo");
}

// Staged photos are moved into place, not copied: a disk with room for the photos once
// restores them all; one without restores the records and says why the photos are missing.
TEST_F(Restore, photos_need_their_space_once_and_a_full_disk_still_restores_the_records) {
    BackupArchive archive = backup();
    std::size_t photos = 0;
    for (BackupArchive::Entry& item : archive.items) {
        item.photo = std::string(40000, 'p');
        photos += item.photo->size();
    }
    for (BackupArchive::HistoryItem& item : *archive.history) {
        item.photo = std::string(40000, 'h');
        photos += item.photo->size();
    }
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(archive));

    AtomicFile::Options roomForOnce;
    roomForOnce.freeSpace = std::make_shared<std::size_t>(photos + 20000); // and the data file
    restored.setSaveOptions(roomForOnce);
    BackupResult<RestoreReport> report = BackupCodec::restoreFile(files / "backup.json", restored);
    ASSERT_TRUE(report) << report.description();
    EXPECT_FALSE(restored.lastError()) << *restored.lastError();
    EXPECT_EQ(restored.photoData(restored.collection()[0].photoFile), archive.items[1].photo);
    EXPECT_EQ(test::namesIn(restored.photosFolder()).size(), 4u);

    TempDir fullDir;
    StoneStore full(fullDir.path());
    AtomicFile::Options roomForOne;
    roomForOne.freeSpace = std::make_shared<std::size_t>(40000 + 20000);
    full.setSaveOptions(roomForOne);
    report = BackupCodec::restoreFile(files / "backup.json", full);
    ASSERT_TRUE(report) << report.description();
    EXPECT_EQ(*report, (RestoreReport{2, 2, 2, 0}));
    EXPECT_EQ(full.lastError(), "Couldn't save the photo: No space left on device");
    int withPhoto = 0;
    for (const auto& e : full.collection()) {
        withPhoto += e.photoFile ? 1 : 0;
    }
    for (const auto& e : full.history()) {
        withPhoto += e.photoFile ? 1 : 0;
    }
    EXPECT_EQ(withPhoto, 1);
    StoneStore restarted(fullDir.path());
    EXPECT_EQ(restarted.collection().size(), 2u) << "the records were saved";
    EXPECT_EQ(test::namesIn(fullDir.path()),
              (std::set<std::string>{"Photos", "quarrydex-data.json"}));
}

// The question asked before a restore gets the answer the restore then gives: new ids,
// ids already here, repeats inside the backup, favorites already present or repeated.
TEST_F(Restore, the_preview_reports_what_the_restore_then_does_and_changes_nothing) {
    restored.toggleFavorite("amethyst");
    BackupArchive archive = backup();
    archive.items.push_back(archive.items[0]); // a repeat inside the backup
    archive.favorites->push_back("opal");
    archive.favorites->push_back("opal");
    BackupArchive format1 = archive;
    format1.history.reset();
    format1.favorites.reset();

    for (const BackupArchive& candidate : {archive, archive, format1}) {
        std::string dataBefore = test::readFile(restoredDir / "quarrydex-data.json");
        std::set<std::string> photosBefore = test::namesIn(restored.photosFolder());
        RestoreReport preview = BackupCodec::preview(candidate, restored);
        EXPECT_EQ(test::readFile(restoredDir / "quarrydex-data.json"), dataBefore);
        EXPECT_EQ(test::namesIn(restored.photosFolder()), photosBefore);
        EXPECT_EQ(BackupCodec::restore(candidate, restored), preview);
    }
    // The first pass added all but the repeat and the favorite already here; later passes
    // find everything here.
    TempDir freshDir;
    StoneStore fresh(freshDir.path());
    fresh.toggleFavorite("amethyst");
    EXPECT_EQ(BackupCodec::preview(archive, fresh), (RestoreReport{2, 2, 2, 1}));
    EXPECT_EQ(BackupCodec::preview(format1, restored), (RestoreReport{0, 0, 0, 3}));

    // From a staged file as well.
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(archive));
    BackupResult<StagedBackup> staged =
        BackupCodec::decodeFile(files / "backup.json", files.path());
    ASSERT_TRUE(staged) << staged.description();
    RestoreReport preview = BackupCodec::preview(staged->archive(), fresh);
    EXPECT_EQ(BackupCodec::restore(*staged, fresh), preview);
}

// A file in the photo folder that no record names (left by someone, or released and not yet
// deleted) is not the restore's to replace either.
TEST_F(Restore, a_file_already_in_the_photo_folder_is_never_replaced) {
    BackupArchive archive = backup();
    const Uuid id = archive.items[1].id; // the piece with a photo
    const fs::path squatter = restored.photosFolder() / (id.text() + ".jpg");
    test::writeFile(squatter, "someone else's file");
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(archive));
    BackupResult<RestoreReport> report = BackupCodec::restoreFile(files / "backup.json", restored);
    ASSERT_TRUE(report) << report.description();
    EXPECT_EQ(test::readFile(squatter), "someone else's file");
    const CollectionEntry& piece = restored.collection()[1];
    ASSERT_EQ(piece.id, id);
    EXPECT_NE(piece.photoFile, squatter.filename().string());
    EXPECT_EQ(restored.photoData(piece.photoFile), archive.items[1].photo);

    // The same from memory.
    TempDir otherDir;
    StoneStore other(otherDir.path());
    test::writeFile(other.photosFolder() / (id.text() + ".jpg"), "someone else's file");
    (void)BackupCodec::restore(archive, other);
    EXPECT_EQ(test::readFile(other.photosFolder() / (id.text() + ".jpg")), "someone else's file");
    EXPECT_EQ(other.photoData(other.collection()[1].photoFile), archive.items[1].photo);
}

// Staged photos live in a hidden folder of the data folder until they are moved in; a
// backup that is read and then not restored, or restored only in part, leaves none there.
TEST_F(Restore, a_staged_backup_takes_its_staging_folder_with_it) {
    TempDir files;
    test::writeFile(files / "backup.json", BackupCodec::encode(backup()));
    const std::set<std::string> before = test::namesIn(restoredDir.path());
    {
        BackupResult<StagedBackup> staged =
            BackupCodec::decodeFile(files / "backup.json", restoredDir.path());
        ASSERT_TRUE(staged) << staged.description();
        EXPECT_TRUE(staged->flush());
        EXPECT_EQ(test::namesIn(restoredDir.path()).size(), before.size() + 1);
    }
    EXPECT_EQ(test::namesIn(restoredDir.path()), before) << "declined";

    (void)BackupCodec::restore(backup(), restored);
    {
        BackupResult<StagedBackup> staged =
            BackupCodec::decodeFile(files / "backup.json", restoredDir.path());
        ASSERT_TRUE(staged) << staged.description();
        EXPECT_EQ(BackupCodec::restore(*staged, restored), (RestoreReport{0, 0, 0, 4}));
    }
    EXPECT_EQ(test::namesIn(restoredDir.path()),
              (std::set<std::string>{"Photos", "quarrydex-data.json"}))
        << "nothing moved in, everything removed";
}

TEST_F(Restore, a_refused_file_changes_nothing) {
    restored.toggleFavorite("opal");
    std::string dataBefore = test::readFile(restoredDir / "quarrydex-data.json");
    BackupResult<RestoreReport> report =
        BackupCodec::restoreFile(test::fixture("backup/newer-version.json"), restored);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error(), BackupError::newerVersion(99));

    TempDir files;
    std::string bytes = BackupCodec::encode(backup());
    test::writeFile(files / "truncated.json", bytes.substr(0, bytes.size() - 40));
    report = BackupCodec::restoreFile(files / "truncated.json", restored);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error(), BackupError::notABackup());

    EXPECT_TRUE(restored.collection().empty());
    EXPECT_TRUE(fs::is_empty(restored.photosFolder()));
    EXPECT_EQ(test::readFile(restoredDir / "quarrydex-data.json"), dataBefore);
}

} // namespace
} // namespace quarrydex
