#include "app/backup_job.h"

#include "backup/archive_format.h"
#include "backup/base64.h"
#include "backup/json_stream.h"
#include "store/atomic_file.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

constexpr const char* cancelledMarker = "cancelled";

// Reads a whole file; none when it cannot be read.
std::optional<std::string> readWhole(const fs::path& file) {
    int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return std::nullopt;
    }
    std::string bytes;
    char buffer[1 << 16];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            ::close(fd);
            return std::nullopt;
        }
        if (n == 0) {
            break;
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return bytes;
}

Status systemError(int error) {
    return Error{std::strerror(error)};
}

// Writes a new file without flushing it: under a temporary name, then renamed into place.
// The caller flushes a batch of such files at once with flushFileSystem().
Status writeUnflushed(const fs::path& target, std::string_view bytes) {
    fs::path temp = target;
    temp += ".part";
    int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        return systemError(errno);
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            int error = errno;
            ::close(fd);
            ::unlink(temp.c_str());
            return systemError(error);
        }
        done += static_cast<std::size_t>(n);
    }
    if (::close(fd) != 0 || ::rename(temp.c_str(), target.c_str()) != 0) {
        int error = errno;
        ::unlink(temp.c_str());
        return systemError(error);
    }
    return {};
}

// Flushes everything written to the file system holding `folder` to the disk.
Status flushFileSystem(const fs::path& folder) {
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return systemError(errno);
    }
    int result = ::syncfs(fd);
    int error = errno;
    ::close(fd);
    return result == 0 ? Status{} : systemError(error);
}

bool isBareName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

std::uint64_t photoSize(const fs::path& folder, const std::optional<std::string>& file) {
    if (!file || !isBareName(*file)) {
        return 0;
    }
    std::error_code ec;
    std::uintmax_t size = fs::file_size(folder / *file, ec);
    return ec ? 0 : static_cast<std::uint64_t>(size);
}

// A file read back piece by piece, counting into the progress and ending early on cancel.
class CountingSource final : public JsonSource {
public:
    CountingSource(const fs::path& file, JobProgress& progress)
        : file_(file), progress_(progress) {}

    std::string_view next() override {
        if (progress_.cancelled()) {
            cancelled_ = true;
            return {};
        }
        std::string_view piece = file_.next();
        progress_.done.fetch_add(piece.size(), std::memory_order_relaxed);
        return piece;
    }
    int error() const { return file_.error(); }
    bool cancelled() const { return cancelled_; }

private:
    JsonFileSource file_;
    JobProgress& progress_;
    bool cancelled_ = false;
};

} // namespace

double JobProgress::fraction() const {
    std::uint64_t t = total.load(std::memory_order_relaxed);
    if (t == 0) {
        return 0;
    }
    return std::min(1.0, static_cast<double>(done.load(std::memory_order_relaxed)) /
                             static_cast<double>(t));
}

BackupSnapshot BackupSnapshot::take(const StoneStore& store, Timestamp date) {
    BackupSnapshot snapshot;
    snapshot.records = BackupCodec::makeArchive(store, false, date);
    snapshot.photosFolder = store.photosFolder();
    snapshot.itemPhotos.reserve(store.collection().size());
    for (const CollectionEntry& entry : store.collection()) {
        snapshot.itemPhotos.push_back(entry.photoFile);
    }
    snapshot.historyPhotos.reserve(store.history().size());
    for (const HistoryEntry& entry : store.history()) {
        snapshot.historyPhotos.push_back(entry.photoFile);
    }
    return snapshot;
}

JobOutcome writeVerifiedBackup(const BackupSnapshot& snapshot, const fs::path& target,
                               JobProgress& progress, AtomicFile::Options options) {
    // The total: every photo's Base64 text written once and read once, plus a rough
    // allowance for the records.
    std::uint64_t photoText = 0;
    for (const auto& file : snapshot.itemPhotos) {
        photoText += base64::encodedSize(photoSize(snapshot.photosFolder, file));
    }
    for (const auto& file : snapshot.historyPhotos) {
        photoText += base64::encodedSize(photoSize(snapshot.photosFolder, file));
    }
    std::uint64_t records =
        512 * (snapshot.records.items.size() +
               (snapshot.records.history ? snapshot.records.history->size() : 0)) +
        256;
    progress.done = 0;
    progress.total = 2 * (photoText + records);

    auto photoOf = [&](const std::optional<std::string>& file, std::string& holder) {
        if (!file || !isBareName(*file)) {
            return static_cast<const std::string*>(nullptr);
        }
        std::optional<std::string> bytes = readWhole(snapshot.photosFolder / *file);
        if (!bytes) {
            return static_cast<const std::string*>(nullptr); // a missing photo is left out
        }
        holder = std::move(*bytes);
        return static_cast<const std::string*>(&holder);
    };

    std::uint64_t written = 0;
    {
        AtomicFile file(target, options);
        if (!file.status()) {
            return JobOutcome::failure(file.status().error());
        }
        Status status = archive::write(
            snapshot.records,
            [&](std::size_t i, std::string& holder) {
                return photoOf(snapshot.itemPhotos[i], holder);
            },
            [&](std::size_t i, std::string& holder) {
                return photoOf(snapshot.historyPhotos[i], holder);
            },
            [&](std::string_view piece) -> Status {
                if (progress.cancelled()) {
                    return Error{cancelledMarker};
                }
                written += piece.size();
                progress.done.fetch_add(piece.size(), std::memory_order_relaxed);
                return file.append(piece);
            });
        if (status && progress.cancelled()) {
            status = Error{cancelledMarker};
        }
        if (status) {
            status = file.commit();
        }
        if (!status) {
            // The uncommitted file removes its temporary file as it goes.
            if (progress.cancelled()) {
                return JobOutcome::cancellation();
            }
            return JobOutcome::failure(status.error());
        }
    }
    // Now the real size is known: what was written, and as much again to read back.
    progress.total = 2 * written;
    progress.done = written;
    progress.stage = 1;

    auto removeTarget = [&] {
        std::error_code ec;
        fs::remove(target, ec);
    };
    CountingSource source(target, progress);
    archive::DropPhotos photos;
    BackupResult<BackupArchive> read = archive::read(source, photos);
    if (source.cancelled()) {
        removeTarget();
        return JobOutcome::cancellation();
    }
    if (source.error() != 0) {
        removeTarget();
        return JobOutcome::failure(std::strerror(source.error()));
    }
    if (!read) {
        removeTarget();
        return JobOutcome::failure(read.error().description());
    }
    if (read->items.size() != snapshot.records.items.size()) {
        removeTarget();
        return JobOutcome::failure(
            BackupError::unreadable("Verification failed after writing.").description());
    }
    return {JobOutcome::Kind::done, target, {}};
}

JobOutcome writeBackupToDrive(const BackupSnapshot& snapshot, const fs::path& drive,
                              JobProgress& progress, AtomicFile::Options options) {
    fs::path folder = drive / driveBackupFolder;
    std::error_code ec;
    // Not create_directories: a drive that was unplugged must not get its folder recreated
    // on the disk underneath its mount point.
    fs::create_directory(folder, ec);
    if (ec) {
        return JobOutcome::failure(ec.message());
    }
    fs::path target =
        folder /
        (BackupCodec::defaultFilename("Quarrydex Backup", snapshot.records.createdAt) + ".json");
    return writeVerifiedBackup(snapshot, target, progress, options);
}

RestorePlan RestorePlan::make(const BackupArchive& archive, const StoneStore& store) {
    RestorePlan plan;
    for (const CollectionEntry& entry : store.collection()) {
        plan.collectionIds.insert(entry.id);
    }
    for (const HistoryEntry& entry : store.history()) {
        plan.historyIds.insert(entry.id);
    }
    plan.favorites = store.favorites();

    plan.backupPieces = static_cast<int>(archive.items.size());
    std::unordered_set<Uuid> seen = plan.collectionIds;
    for (const BackupArchive::Entry& item : archive.items) {
        if (seen.insert(item.id).second) {
            ++plan.newPieces;
        } else {
            ++plan.alreadyHere;
        }
    }
    if (archive.history) {
        plan.backupHistory = static_cast<int>(archive.history->size());
        seen = plan.historyIds;
        for (const BackupArchive::HistoryItem& item : *archive.history) {
            if (seen.insert(item.id).second) {
                ++plan.newHistory;
            } else {
                ++plan.alreadyHere;
            }
        }
    }
    if (archive.favorites) {
        plan.backupFavorites = static_cast<int>(archive.favorites->size());
        std::vector<std::string> added;
        for (const std::string& id : *archive.favorites) {
            if (std::find(plan.favorites.begin(), plan.favorites.end(), id) ==
                    plan.favorites.end() &&
                std::find(added.begin(), added.end(), id) == added.end()) {
                added.push_back(id);
            }
        }
        plan.newFavorites = static_cast<int>(added.size());
    }
    return plan;
}

std::string RestorePlan::additionsText() const {
    auto count = [](int n, const char* one, const char* many) {
        return std::to_string(n) + " " + (n == 1 ? one : many);
    };
    return count(newPieces, "new piece", "new pieces") + ", " + std::to_string(alreadyHere) +
           " already here, " + count(newHistory, "history entry", "history entries") + ", " +
           count(newFavorites, "favourite", "favourites");
}

JobOutcome writeRestorePhotos(const StagedBackup& backup, const RestorePlan& plan,
                              const fs::path& photosFolder, JobProgress& progress,
                              RestoreAdditions& additions) {
    const BackupArchive& archive = backup.archive();
    std::size_t historyCount = archive.history ? archive.history->size() : 0;
    progress.done = 0;
    progress.total = archive.items.size() + historyCount + 1;

    std::vector<fs::path> writtenPhotos;
    auto undo = [&] {
        for (const fs::path& file : writtenPhotos) {
            std::error_code ec;
            fs::remove(file, ec);
        }
        additions = {};
    };
    std::error_code ec;
    fs::create_directories(photosFolder, ec);
    // Writes one photo; false (after undoing) when it could not be written.
    std::string failure;
    // Each photo goes in under its record's id, or under a fresh name when a file of that
    // name is already there (a photo this restore must not overwrite). The photos are
    // written without a flush each and flushed together below, before any record that
    // names them is merged.
    auto storePhoto = [&](const std::optional<std::string>& bytes,
                          const Uuid& id) -> std::optional<std::optional<std::string>> {
        if (!bytes) {
            return std::optional<std::string>{};
        }
        std::string name = id.text() + ".jpg";
        std::error_code ec;
        while (fs::exists(photosFolder / name, ec)) {
            name = Uuid::random().text() + ".jpg";
        }
        Status status = writeUnflushed(photosFolder / name, *bytes);
        if (!status) {
            failure = "Couldn't save the photo: " + status.error();
            return std::nullopt;
        }
        writtenPhotos.push_back(photosFolder / name);
        return std::optional<std::string>{name};
    };

    std::unordered_set<Uuid> collectionIds = plan.collectionIds;
    for (std::size_t i = 0; i < archive.items.size(); ++i) {
        if (progress.cancelled()) {
            undo();
            return JobOutcome::cancellation();
        }
        progress.done.fetch_add(1, std::memory_order_relaxed);
        const BackupArchive::Entry& item = archive.items[i];
        if (!collectionIds.insert(item.id).second) {
            ++additions.skippedExisting;
            continue;
        }
        std::optional<std::optional<std::string>> photo = storePhoto(backup.itemPhoto(i), item.id);
        if (!photo) {
            undo();
            return JobOutcome::failure(failure);
        }
        CollectionEntry entry;
        entry.id = item.id;
        entry.specimenID = item.specimenID;
        entry.name = item.name;
        entry.dateAdded = item.dateAdded;
        entry.acquisition = item.acquisition;
        entry.location = item.location;
        entry.notes = item.notes;
        entry.confidence = item.confidence;
        entry.photoFile = *photo;
        additions.collection.push_back(std::move(entry));
    }
    std::unordered_set<Uuid> historyIds = plan.historyIds;
    for (std::size_t i = 0; i < historyCount; ++i) {
        if (progress.cancelled()) {
            undo();
            return JobOutcome::cancellation();
        }
        progress.done.fetch_add(1, std::memory_order_relaxed);
        const BackupArchive::HistoryItem& item = (*archive.history)[i];
        if (!historyIds.insert(item.id).second) {
            ++additions.skippedExisting;
            continue;
        }
        std::optional<std::optional<std::string>> photo =
            storePhoto(backup.historyPhoto(i), item.id);
        if (!photo) {
            undo();
            return JobOutcome::failure(failure);
        }
        HistoryEntry entry;
        entry.id = item.id;
        entry.date = item.date;
        entry.answers = item.answers;
        entry.results = item.results;
        entry.level = item.level;
        entry.photoFile = *photo;
        additions.history.push_back(std::move(entry));
    }
    if (archive.favorites) {
        for (const std::string& id : *archive.favorites) {
            if (std::find(plan.favorites.begin(), plan.favorites.end(), id) ==
                    plan.favorites.end() &&
                std::find(additions.favorites.begin(), additions.favorites.end(), id) ==
                    additions.favorites.end()) {
                additions.favorites.push_back(id);
            }
        }
    }
    if (progress.cancelled()) {
        undo();
        return JobOutcome::cancellation();
    }
    // One flush for all the photos (their data and their folder entries).
    if (!writtenPhotos.empty()) {
        Status flushed = flushFileSystem(photosFolder);
        if (!flushed) {
            std::string message = "Couldn't save the photo: " + flushed.error();
            undo();
            return JobOutcome::failure(message);
        }
    }
    progress.done = progress.total.load();
    return {};
}

RestoreReport applyRestore(RestoreAdditions additions, StoneStore& store) {
    RestoreReport report;
    report.collectionAdded = static_cast<int>(additions.collection.size());
    report.historyAdded = static_cast<int>(additions.history.size());
    report.favoritesAdded = static_cast<int>(additions.favorites.size());
    report.skippedExisting = additions.skippedExisting;
    store.merge(std::move(additions.collection), std::move(additions.history), additions.favorites);
    return report;
}

JobOutcome writeTextFile(const std::string& text, const fs::path& target, JobProgress& progress) {
    progress.done = 0;
    progress.total = text.size() + 1;
    if (progress.cancelled()) {
        return JobOutcome::cancellation();
    }
    Status status = AtomicFile::write(target, text);
    if (!status) {
        return JobOutcome::failure(status.error());
    }
    progress.done = progress.total.load();
    return {JobOutcome::Kind::done, target, {}};
}

} // namespace quarrydex
