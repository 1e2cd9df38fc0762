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
