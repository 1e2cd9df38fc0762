#pragma once
// The work behind the backup screen, split so that nothing slow runs on the store's thread
// and the store is never read from another thread:
//
//  - take*() run on the store's thread and copy what the work needs (the records without
//    their photos, photo file names, id sets). That is a few microseconds per record.
//  - write*() and the restore's photo writing run on a worker thread over those copies and
//    the files alone, reporting progress and honouring a cancel request.
//  - applyRestore() runs on the store's thread again and merges the records in one save.
//
// Photo files stay readable for the worker because the caller holds them in the store
// (StoneStore::holdPhotoFiles) while a backup runs; a photo replaced meanwhile is read
// either whole before or whole after the replacement (replacements are atomic renames).

#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "store/atomic_file.h"
#include "store/records.h"
#include "store/stone_store.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace quarrydex {

// Shared between the worker (writes) and the screen (reads): work done of work total, in
// bytes or records, and the cancel request.
struct JobProgress {
    std::atomic<std::uint64_t> done{0};
    std::atomic<std::uint64_t> total{0};
    std::atomic<bool> cancelRequested{false};
    // Which step runs: for a backup 0 while writing, 1 while reading it back.
    std::atomic<int> stage{0};

    // 0..1; 0 while the total is not known yet.
    double fraction() const;
    bool cancelled() const { return cancelRequested.load(std::memory_order_relaxed); }
};

// How a job ended. `file` is the written file, `message` the failure's description.
struct JobOutcome {
    enum class Kind { done, failed, cancelled };
    Kind kind = Kind::done;
    std::filesystem::path file;
    std::string message;

    static JobOutcome failure(std::string message) {
        return {Kind::failed, {}, std::move(message)};
    }
    static JobOutcome cancellation() { return {Kind::cancelled, {}, {}}; }
};

// The store's content at one moment, for a backup written on another thread.
struct BackupSnapshot {
    BackupArchive records; // no photo bytes
    std::filesystem::path photosFolder;
    std::vector<std::optional<std::string>> itemPhotos;    // photo file of items[i]
    std::vector<std::optional<std::string>> historyPhotos; // photo file of history[i]

    static BackupSnapshot take(const StoneStore& store, Timestamp date);
};

// The folder backups go into on a drive.
inline constexpr const char* driveBackupFolder = "Quarrydex Backups";

// Writes the snapshot as a backup file at `target`, atomically, then reads it back and
// checks it decodes and holds as many items as the snapshot. A failure or a cancel leaves
// no file at `target` (an earlier file of that name stays when the write itself failed; a
// written file that fails verification or is cancelled while being verified is removed).
// Progress counts the bytes written plus the bytes read back.
// `options` is for tests (e.g. a simulated full disk).
JobOutcome writeVerifiedBackup(const BackupSnapshot& snapshot, const std::filesystem::path& target,
                               JobProgress& progress, AtomicFile::Options options = {});

// The same into "Quarrydex Backups" at the top of the drive mounted at `drive`, named
// "Quarrydex Backup yyyy-MM-dd HH.mm.ss.json" after the snapshot's date. Only that one
// folder is created: a drive whose mount folder has gone (unplugged) fails rather than
// writing somewhere else.
JobOutcome writeBackupToDrive(const BackupSnapshot& snapshot, const std::filesystem::path& drive,
                              JobProgress& progress, AtomicFile::Options options = {});

// What a decoded backup would add to the store, worked out against the store's ids.
struct RestorePlan {
    std::unordered_set<Uuid> collectionIds; // the store's, before the restore
    std::unordered_set<Uuid> historyIds;
    std::vector<std::string> favorites; // the store's

    // The backup's content.
    int backupPieces = 0;
    int backupHistory = 0;
    int backupFavorites = 0;
    // What restoring it adds.
    int newPieces = 0;
    int newHistory = 0;
    int newFavorites = 0;
    int alreadyHere = 0; // pieces and history entries whose id the store holds

    static RestorePlan make(const BackupArchive& archive, const StoneStore& store);
    // "12 new pieces, 3 already here, 40 history entries, 2 favourites"
    std::string additionsText() const;
};

// The records a restore adds, their photos already written into the photo folder.
struct RestoreAdditions {
    std::vector<CollectionEntry> collection;
    std::vector<HistoryEntry> history;
    std::vector<std::string> favorites;
    int skippedExisting = 0;
};

// Worker side of a restore: writes the photos of the records the plan counts as new into
// `photosFolder` (each under its record's id, atomically) and builds those records. Any
// photo that cannot be written, or a cancel, removes the photos written so far and
// returns the failure (nothing is to be merged then). Progress counts records.
JobOutcome writeRestorePhotos(const StagedBackup& backup, const RestorePlan& plan,
                              const std::filesystem::path& photosFolder, JobProgress& progress,
                              RestoreAdditions& additions);

// Store side: merges the additions in one save and returns the report.
RestoreReport applyRestore(RestoreAdditions additions, StoneStore& store);

// Writes `text` to `target` atomically (the CSV export).
JobOutcome writeTextFile(const std::string& text, const std::filesystem::path& target,
                         JobProgress& progress);

} // namespace quarrydex
