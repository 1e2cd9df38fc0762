#pragma once
// The work behind the backup screen's backups and export, split so that nothing slow runs
// on the store's thread and the store is never read from another thread:
//
//  - BackupSnapshot::take() runs on the store's thread and copies what a backup needs (the
//    records without their photos, photo file names). That is a few microseconds a record.
//  - write*() run on a worker thread over that copy and the files alone, reporting
//    progress and honouring a cancel request.
//
// Restores need none of this: the backup screen uses BackupCodec::decodeFile on the worker
// and BackupCodec::restore on the store's thread.
//
// Photo files stay readable for the worker because the caller holds them in the store
// (StoneStore::holdPhotoFiles) while a backup runs; a photo replaced meanwhile is read
// either whole before or whole after the replacement (replacements are atomic renames).

#include "backup/backup_archive.h"
#include "store/atomic_file.h"
#include "store/stone_store.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
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

// Writes `text` to `target` atomically (the CSV export).
JobOutcome writeTextFile(const std::string& text, const std::filesystem::path& target,
                         JobProgress& progress);

} // namespace quarrydex
