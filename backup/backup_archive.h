#pragma once
// Backups: one self-contained JSON file with the whole collection and its photos, the
// identification history with its photos and the favorites, written to a folder or a
// flash drive and restored additively on any installation.
//
// The file ("Quarrydex Backup yyyy-MM-dd HH.mm.ss.json") is one compact line of UTF-8
// JSON with every object's keys in byte order; dates are ISO 8601 UTC text with whole
// seconds ("2026-10-18T12:00:00Z"), UUIDs canonical upper-case text, photo bytes standard
// Base64 with padding, and optional values are left out, never null:
//
//   {"app":"Quarrydex","createdAt":date,"favorites":[id...],"history":[history...],
//    "items":[item...],"publisher":"Fernwick","version":2}
//   item:    {"acquisition","confidence"?,"dateAdded","id","location","name","notes",
//             "photo"?,"specimenID"?}
//   history: {"answers":[text...],"date","id","level","photo"?,
//             "results":[{"confidence","specimenID"}...]}
//
// Format 1 (release 0.1) had no "favorites", "history" or "publisher"; it is restored like
// any other. Everything here runs on the caller's thread and reports failure as a value.

#include "store/atomic_file.h"
#include "store/records.h"
#include "store/result.h"
#include "store/timestamp.h"
#include "store/uuid.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quarrydex {

class SpecimenLibrary;
class StoneStore;
struct RestoreReport;

// The content of one backup file. Photos are the photo files' bytes; a backup names no
// photo files and carries no sample marks, so restored records are the user's own.
struct BackupArchive {
    static constexpr int currentVersion = 2;

    // One collection piece.
    struct Entry {
        Uuid id = Uuid::random();
        std::optional<std::string> specimenID;
        std::string name;
        Timestamp dateAdded;
        std::string acquisition = "found"; // an Acquisition raw value, kept as text
        std::string location;
        std::string notes;
        std::optional<double> confidence;
        std::optional<std::string> photo; // bytes

        bool operator==(const Entry&) const = default;
    };

    // One past identification.
    struct HistoryItem {
        Uuid id = Uuid::random();
        Timestamp date;
        std::vector<std::string> answers;
        std::vector<HistoryEntry::Result> results;
        std::string level;
        std::optional<std::string> photo; // bytes

        bool operator==(const HistoryItem&) const = default;
    };

    std::int64_t version = currentVersion;
    std::string app = "Quarrydex";
    std::optional<std::string> publisher; // none in format 1
    Timestamp createdAt;
    std::vector<Entry> items;
    std::optional<std::vector<HistoryItem>> history;   // none in format 1
    std::optional<std::vector<std::string>> favorites; // none in format 1

    bool operator==(const BackupArchive&) const = default;
};

// Why a backup was refused. description() is the sentence shown to the user.
class BackupError {
public:
    enum class Kind { newerVersion, unreadable, notABackup };

    // A format number above BackupArchive::currentVersion.
    static BackupError newerVersion(std::int64_t format) {
        return {Kind::newerVersion, format, {}};
    }
    // The bytes could not be processed for another reason (a file that cannot be read, a
    // photo that cannot be set aside, a verification that failed after writing).
    static BackupError unreadable(std::string message) {
        return {Kind::unreadable, 0, std::move(message)};
    }
    // Not JSON, or JSON without the shape of a backup, or another program's file.
    static BackupError notABackup() { return {Kind::notABackup, 0, {}}; }

    Kind kind() const { return kind_; }
    std::int64_t format() const { return format_; }
    const std::string& message() const { return message_; }
    std::string description() const;

    bool operator==(const BackupError&) const = default;

private:
    BackupError(Kind kind, std::int64_t format, std::string message)
        : kind_(kind), format_(format), message_(std::move(message)) {}

    Kind kind_;
    std::int64_t format_;
    std::string message_;
};

// A value or the BackupError that refused it.
template <class T> using BackupResult = Result<T, BackupError>;

// A backup read from a file with its photos set aside in a private staging folder rather
// than in memory, so a collection of any size restores within a few megabytes. The
// staging folder and its files are removed when the object goes away. Move-only.
class StagedBackup {
public:
    StagedBackup(StagedBackup&& other) noexcept;
    StagedBackup& operator=(StagedBackup&& other) noexcept;
    StagedBackup(const StagedBackup&) = delete;
    StagedBackup& operator=(const StagedBackup&) = delete;
    ~StagedBackup();

    // The records; their `photo` fields are none (the photos are in the staging folder).
    const BackupArchive& archive() const { return archive_; }
    // The photo bytes of items[index] or history[index]; none when it has no photo or the
    // staged file has gone.
    std::optional<std::string> itemPhoto(std::size_t index) const;
    std::optional<std::string> historyPhoto(std::size_t index) const;
    // Where those bytes are staged; none when the record has no staged photo. Restore moves
    // the file into the store rather than copying it.
    std::optional<std::filesystem::path> itemPhotoFile(std::size_t index) const;
    std::optional<std::filesystem::path> historyPhotoFile(std::size_t index) const;
    // Why some photo of the file could not be set aside (most often a full disk); those
    // records have no photo. None when every photo was staged.
    const std::optional<std::string>& photoProblem() const { return photoProblem_; }
    // Flushes the staged photos to the disk (the file system holding the staging folder), so
    // that restoring them into a store on the same disk, which moves them, has little left
    // to flush. Success when nothing was staged.
    Status flush() const;

private:
    friend class BackupCodec;
    StagedBackup() = default;
    void removeFolder();

    BackupArchive archive_;
    std::filesystem::path folder_; // empty while no photo was staged
    std::vector<bool> itemHasPhoto_;
    std::vector<bool> historyHasPhoto_;
    std::optional<std::string> photoProblem_;
};

// Tests only: ways to make writeBackup fail on purpose.
struct BackupWriteOptions {
    AtomicFile::Options file;                                     // e.g. a simulated full disk
    std::function<void(const std::filesystem::path&)> afterWrite; // runs before the read-back
};

class BackupCodec {
public:
    BackupCodec() = delete;

    // The store's content as an archive: format 2, app "Quarrydex", publisher "Fernwick",
    // createdAt = date, collection and history in store order, favorites. With
    // includePhotos each record carries its photo file's bytes (none when the file is
    // missing). Holds every photo in memory at once: for files use writeBackup.
    static BackupArchive makeArchive(const StoneStore& store, bool includePhotos, Timestamp date);

    // The file's bytes. Never fails: text that is not valid UTF-8 is written with U+FFFD in
    // its place, and a confidence that is not a finite number is left out (or written as 0
    // where the format requires one), since JSON cannot hold it.
    static std::string encode(const BackupArchive& archive);

    // Reads a backup held in memory. Refusals, in this order: notABackup when the bytes
    // are not JSON or not shaped like a backup (a missing key, a value of the wrong type, a
    // date not in the whole-second UTC form, an ill-formed UUID or Base64, a "version"
    // that is not an integer within 64 bits); notABackup when "app" is not exactly
    // "Quarrydex"; newerVersion when "version" is above 2. Never throws.
    static BackupResult<BackupArchive> decode(std::string_view bytes);

    // decode() for a file of any size: the records are kept in memory and each photo is
    // decoded into its own file in a new hidden folder inside `stagingParent` (or, when
    // that is empty or refuses, the system's temporary folder). Refuses as decode() does;
    // a file that cannot be read is unreadable with the system's description. A photo that
    // cannot be set aside (a full disk) is left out, and photoProblem() says why, so the
    // records can still be restored. Nothing is left behind on failure. `options` are for
    // tests (a simulated full disk).
    static BackupResult<StagedBackup> decodeFile(const std::filesystem::path& file,
                                                 const std::filesystem::path& stagingParent = {},
                                                 const AtomicFile::Options& options = {});

    // prefix, a blank and the local date and time as "yyyy-MM-dd HH.mm.ss"; no extension.
    static std::string defaultFilename(std::string_view prefix, Timestamp date);

    // Adds what the store lacks and never changes or deletes what it has: collection and
    // history records whose id the store already holds are skipped (and counted), as are
    // repeats of an id within the backup itself; favorites already present are skipped
    // without being counted. New photos are written under their record's own id, or under
    // a fresh name when a record (of the store or of this restore) already uses that one or
    // a file of that name is in the photo folder;
    // they are flushed to disk together, before the merge saves the records that name
    // them. A photo that cannot be written leaves its record without a photo, with the
    // store's lastError saying why. The store saves once, also when nothing was new.
    static RestoreReport restore(const BackupArchive& archive, StoneStore& store);
    // What restore() would report for `archive` if it ran now, by the same rules; changes
    // nothing. For the question asked before a restore.
    static RestoreReport preview(const BackupArchive& archive, const StoneStore& store);
    static RestoreReport restore(const StagedBackup& backup, StoneStore& store);
    // decodeFile() with staging inside the store's root folder, then restore(). A refused
    // file changes nothing in the store.
    static BackupResult<RestoreReport> restoreFile(const std::filesystem::path& file,
                                                   StoneStore& store);

    // Writes a backup of the whole store, photos included, into `folder` (created with its
    // parents when missing) as defaultFilename("Quarrydex Backup", date) + ".json",
    // atomically, replacing a file of that name; then reads it back from disk and checks
    // that it decodes and holds as many items as the store's collection. Photos are read
    // and encoded one at a time and the read-back keeps no photo, so memory use does not
    // grow with the collection. Returns the file's path, or the error's sentence: the
    // system's description for a folder or write failure, a BackupError's description
    // for a read-back that does not decode, and "The backup couldn't be read: Verification
    // failed after writing." for a wrong item count. A failed write leaves the folder as it
    // was (an earlier file of the same name untouched, no temporary file).
    static Result<std::filesystem::path> writeBackup(const StoneStore& store,
                                                     const std::filesystem::path& folder,
                                                     Timestamp date,
                                                     const BackupWriteOptions& options = {});

    // The collection as CSV text: the header line "Name,Species,Category,Acquired,Date,
    // Location,Notes", then one line per entry in store order; LF line ends, a final LF.
    static std::string csv(const StoneStore& store, const SpecimenLibrary& library);
    // A field with a comma, a double quote or a line feed, in double quotes with inner
    // quotes doubled; any other field unchanged (a carriage return alone is not quoted).
    static std::string escapeCSV(std::string_view field);
};

} // namespace quarrydex
