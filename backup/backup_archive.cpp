#include "backup/backup_archive.h"

#include "backup/archive_format.h"
#include "backup/base64.h"
#include "backup/branding.h"
#include "store/stone_store.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

std::string BackupError::description() const {
    switch (kind_) {
    case Kind::newerVersion:
        return "This backup was made by a newer version of Quarrydex (format " +
               std::to_string(format_) + "). Update the app to restore it.";
    case Kind::unreadable:
        return "The backup couldn't be read: " + message_;
    case Kind::notABackup:
        return "That file isn't a Quarrydex backup.";
    }
    return {};
}

namespace {

BackupArchive::Entry archiveEntry(const CollectionEntry& entry) {
    BackupArchive::Entry out;
    out.id = entry.id;
    out.specimenID = entry.specimenID;
    out.name = entry.name;
    out.dateAdded = entry.dateAdded;
    out.acquisition = entry.acquisition;
    out.location = entry.location;
    out.notes = entry.notes;
    out.confidence = entry.confidence;
    return out;
}

BackupArchive::HistoryItem archiveHistoryItem(const HistoryEntry& entry) {
    BackupArchive::HistoryItem out;
    out.id = entry.id;
    out.date = entry.date;
    out.answers = entry.answers;
    out.results = entry.results;
    out.level = entry.level;
    return out;
}

const std::string* ownPhoto(const std::optional<std::string>& photo) {
    return photo ? &*photo : nullptr;
}

std::string systemMessage(int code) {
    return std::strerror(code);
}

// Writes every decoded photo to a file of its own in a staging folder made on first use.
// A photo that cannot be written (a full disk) is left out, and the first such failure
// kept, so that the records can still be restored without it.
class StagePhotos final : public archive::PhotoSink {
public:
    StagePhotos(fs::path parent, AtomicFile::Options options)
        : parent_(std::move(parent)), options_(std::move(options)) {}
    ~StagePhotos() override {
        if (!kept_ && !folder_.empty()) {
            std::error_code ignored;
            fs::remove_all(folder_, ignored);
        }
    }

    Result<std::optional<std::string>> take(archive::PhotoOwner owner, std::size_t index,
                                            std::string_view base64) override {
        if (folder_.empty()) {
            if (Status made = makeFolder(); !made) {
                return leftOut(made.error());
            }
        }
        std::optional<std::string> bytes = base64::decode(base64);
        if (options_.freeSpace) {
            if (*options_.freeSpace < bytes->size()) {
                return leftOut(systemMessage(ENOSPC));
            }
            *options_.freeSpace -= bytes->size();
        }
        fs::path file = folder_ / stagedName(owner, index);
        int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0) {
            return leftOut(systemMessage(errno));
        }
        const char* data = bytes->data();
        std::size_t left = bytes->size();
        int code = 0;
        while (left > 0) {
            ssize_t n = ::write(fd, data, left);
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n < 0) {
                code = errno;
                break;
            }
            data += n;
            left -= static_cast<std::size_t>(n);
        }
        if (::close(fd) != 0 && code == 0) {
            code = errno;
        }
        if (code != 0) {
            ::unlink(file.c_str());
            return leftOut(systemMessage(code));
        }
        auto& flags = owner == archive::PhotoOwner::item ? items : history;
        if (flags.size() <= index) {
            flags.resize(index + 1, false);
        }
        flags[index] = true;
        return std::optional<std::string>{};
    }

    // The chosen folder first (beside the store, so on the same disk), then the system's
    // temporary folder, so a store whose root refuses new files can still restore records.
    Status makeFolder() {
        std::vector<fs::path> candidates;
        if (!parent_.empty()) {
            candidates.push_back(parent_);
        }
        std::error_code ec;
        if (fs::path temp = fs::temp_directory_path(ec); !ec) {
            candidates.push_back(temp);
        }
        int firstError = ENOENT;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            std::string pattern = (candidates[i] / ".quarrydex-restore-XXXXXX").string();
            if (::mkdtemp(pattern.data())) {
                folder_ = pattern;
                return {};
            }
            if (i == 0) {
                firstError = errno;
            }
        }
        return Error{systemMessage(firstError)};
    }

    Result<std::optional<std::string>> leftOut(std::string cause) {
        if (!problem) {
            problem = std::move(cause);
        }
        return std::optional<std::string>{};
    }

    static std::string stagedName(archive::PhotoOwner owner, std::size_t index) {
        return (owner == archive::PhotoOwner::item ? "item-" : "history-") + std::to_string(index);
    }

    // Hands the folder over to a StagedBackup.
    fs::path release() {
        kept_ = true;
        return folder_;
    }

    std::vector<bool> items;
    std::vector<bool> history;
    std::optional<std::string> problem;

private:
    fs::path parent_;
    AtomicFile::Options options_;
    fs::path folder_;
    bool kept_ = false;
};

std::optional<std::string> readStaged(const fs::path& file) {
    int fd = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return std::nullopt;
    }
    std::string bytes;
    char buffer[64 * 1024];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n <= 0) {
            ::close(fd);
            return n == 0 ? std::optional(std::move(bytes)) : std::nullopt;
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
}

} // namespace

StagedBackup::StagedBackup(StagedBackup&& other) noexcept
    : archive_(std::move(other.archive_)), folder_(std::exchange(other.folder_, {})),
      itemHasPhoto_(std::move(other.itemHasPhoto_)),
      historyHasPhoto_(std::move(other.historyHasPhoto_)),
      photoProblem_(std::move(other.photoProblem_)) {}

StagedBackup& StagedBackup::operator=(StagedBackup&& other) noexcept {
    if (this != &other) {
        removeFolder();
        archive_ = std::move(other.archive_);
        folder_ = std::exchange(other.folder_, {});
        itemHasPhoto_ = std::move(other.itemHasPhoto_);
        historyHasPhoto_ = std::move(other.historyHasPhoto_);
        photoProblem_ = std::move(other.photoProblem_);
    }
    return *this;
}

StagedBackup::~StagedBackup() {
    removeFolder();
}

void StagedBackup::removeFolder() {
    if (!folder_.empty()) {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
        folder_.clear();
    }
}

Status StagedBackup::flush() const {
    return folder_.empty() ? Status{} : AtomicFile::flushFileSystem(folder_);
}

std::optional<fs::path> StagedBackup::itemPhotoFile(std::size_t index) const {
    if (index >= itemHasPhoto_.size() || !itemHasPhoto_[index]) {
        return std::nullopt;
    }
    return folder_ / StagePhotos::stagedName(archive::PhotoOwner::item, index);
}

std::optional<fs::path> StagedBackup::historyPhotoFile(std::size_t index) const {
    if (index >= historyHasPhoto_.size() || !historyHasPhoto_[index]) {
        return std::nullopt;
    }
    return folder_ / StagePhotos::stagedName(archive::PhotoOwner::history, index);
}

std::optional<std::string> StagedBackup::itemPhoto(std::size_t index) const {
    std::optional<fs::path> file = itemPhotoFile(index);
    return file ? readStaged(*file) : std::nullopt;
}

std::optional<std::string> StagedBackup::historyPhoto(std::size_t index) const {
    std::optional<fs::path> file = historyPhotoFile(index);
    return file ? readStaged(*file) : std::nullopt;
}

BackupArchive BackupCodec::makeArchive(const StoneStore& store, bool includePhotos,
                                       Timestamp date) {
    BackupArchive out;
    out.version = BackupArchive::currentVersion;
    out.app = Branding::appName;
    out.publisher = std::string(Branding::company);
    out.createdAt = date;
    out.items.reserve(store.collection().size());
    for (const CollectionEntry& entry : store.collection()) {
        out.items.push_back(archiveEntry(entry));
        if (includePhotos) {
            out.items.back().photo = store.photoData(entry.photoFile);
        }
    }
    out.history.emplace();
    out.history->reserve(store.history().size());
    for (const HistoryEntry& entry : store.history()) {
        out.history->push_back(archiveHistoryItem(entry));
        if (includePhotos) {
            out.history->back().photo = store.photoData(entry.photoFile);
        }
    }
    out.favorites = store.favorites();
    return out;
}

std::string BackupCodec::encode(const BackupArchive& archive) {
    std::string bytes;
    auto itemPhoto = [&](std::size_t i, std::string&) { return ownPhoto(archive.items[i].photo); };
    auto historyPhoto = [&](std::size_t i, std::string&) {
        return ownPhoto((*archive.history)[i].photo);
    };
    // Appending to a string cannot fail, so neither can this.
    (void)archive::write(archive, itemPhoto, historyPhoto, [&](std::string_view piece) {
        bytes.append(piece);
        return Status::success();
    });
    return bytes;
}

BackupResult<BackupArchive> BackupCodec::decode(std::string_view bytes) {
    JsonMemorySource source(bytes);
    archive::KeepPhotos photos;
    return archive::read(source, photos);
}

BackupResult<StagedBackup> BackupCodec::decodeFile(const fs::path& file,
                                                   const fs::path& stagingParent,
                                                   const AtomicFile::Options& options) {
    JsonFileSource source(file);
    StagePhotos photos(stagingParent, options);
    BackupResult<BackupArchive> read = archive::read(source, photos);
    // A file that could not be read to its end looks truncated to the reader; say why.
    if (source.error() != 0) {
        return BackupError::unreadable(systemMessage(source.error()));
    }
    if (!read) {
        return read.error();
    }
    StagedBackup staged;
    staged.archive_ = std::move(read).value();
    staged.folder_ = photos.release();
    staged.itemHasPhoto_ = std::move(photos.items);
    staged.historyHasPhoto_ = std::move(photos.history);
    staged.photoProblem_ = std::move(photos.problem);
    return staged;
}

std::string BackupCodec::defaultFilename(std::string_view prefix, Timestamp date) {
    return std::string(prefix) + " " + date.formatLocal("%Y-%m-%d %H.%M.%S");
}

} // namespace quarrydex
