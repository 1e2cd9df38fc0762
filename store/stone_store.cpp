#include "store/stone_store.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

constexpr const char* dataFileName = "quarrydex-data.json";
constexpr const char* damagedFileName = "quarrydex-data.damaged.json";
constexpr const char* photosFolderName = "Photos";
// Restore's staging folders (backup/backup_archive.cpp): this and six characters.
constexpr const char* restoreStagingPrefix = ".quarrydex-restore-";
constexpr std::size_t historyCap = 300;

constexpr const char* damagedMessage =
    "Your saved data couldn't be read. A copy was kept as quarrydex-data.damaged.json.";

struct FileRead {
    std::optional<std::string> bytes;
    int error = 0; // errno when bytes is none
};

// Whole-file read that keeps errno apart, so "there is no file" can be told from "there
// is a file we cannot read". Only regular files are read (O_NONBLOCK keeps a FIFO from
// blocking the open; it is then refused like a folder).
FileRead readWholeFile(const fs::path& path) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        return {std::nullopt, errno};
    }
    FileRead result;
    struct stat info {};
    if (::fstat(fd, &info) != 0) {
        result.error = errno;
    } else if (!S_ISREG(info.st_mode)) {
        result.error = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    } else {
        std::string bytes;
        bytes.reserve(static_cast<std::size_t>(info.st_size));
        char buffer[64 * 1024];
        for (;;) {
            ssize_t n = ::read(fd, buffer, sizeof buffer);
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n < 0) {
                result.error = errno;
                break;
            }
            if (n == 0) {
                result.bytes = std::move(bytes);
                break;
            }
            bytes.append(buffer, static_cast<std::size_t>(n));
        }
    }
    ::close(fd);
    return result;
}

// The path does not lead to a file at all (as opposed to a file that cannot be read).
bool isNoFile(int error) {
    return error == ENOENT || error == ENOTDIR;
}

// Records name photos by bare file name inside the photo folder. Anything that could lead
// elsewhere ("/" anywhere, ".", "..", an embedded NUL that would cut the path short) or
// name the folder itself ("") is never opened or deleted.
bool isBareName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

template <class Entry> auto findById(std::vector<Entry>& list, const Uuid& id) {
    return std::find_if(list.begin(), list.end(), [&](const Entry& e) { return e.id == id; });
}

} // namespace

fs::path StoneStore::defaultRoot() {
    // XDG base directories: a relative XDG_DATA_HOME is invalid and must be ignored.
    if (const char* dataHome = std::getenv("XDG_DATA_HOME");
        dataHome && fs::path(dataHome).is_absolute()) {
        return fs::path(dataHome) / "Quarrydex";
    }
    fs::path home;
    if (const char* env = std::getenv("HOME"); env && *env) {
        home = env;
    } else if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir) {
        home = user->pw_dir;
    }
    return home / ".local" / "share" / "Quarrydex";
}

void StoneStore::removeLeftovers(const fs::path& root) {
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(root, ec)) {
        const std::string name = entry.path().filename().string();
        bool leftover = (AtomicFile::isLeftover(name) &&
                         (name.starts_with(std::string(".") + dataFileName) ||
                          name.starts_with(std::string(".") + damagedFileName))) ||
                        (name.starts_with(restoreStagingPrefix) &&
                         name.size() == std::string_view(restoreStagingPrefix).size() + 6);
        if (leftover) {
            std::error_code ignored;
            fs::remove_all(entry.path(), ignored);
        }
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(root / photosFolderName, ec)) {
        if (AtomicFile::isLeftover(entry.path().filename().string())) {
            std::error_code ignored;
            fs::remove(entry.path(), ignored);
        }
    }
}

StoneStore::StoneStore(fs::path root) : root_(std::move(root)) {
    std::error_code ignored; // the first photo write reports a folder that cannot be made
    fs::create_directories(photosFolder(), ignored);
    loadNow();
}

fs::path StoneStore::photosFolder() const {
    return root_ / photosFolderName;
}

fs::path StoneStore::dataFilePath() const {
    return root_ / dataFileName;
}

void StoneStore::clearLastError() {
    if (lastError_) {
        lastError_.reset();
        notify();
    }
}

StoneStore::ObserverId StoneStore::observe(std::function<void()> callback) {
    ObserverId id = nextObserverId_++;
    observers_.emplace_back(id, std::move(callback));
    return id;
}

void StoneStore::unobserve(ObserverId id) {
    std::erase_if(observers_, [id](const auto& observer) { return observer.first == id; });
}

void StoneStore::notify() {
    std::vector<ObserverId> ids;
    ids.reserve(observers_.size());
    for (const auto& observer : observers_) {
        ids.push_back(observer.first);
    }
    for (ObserverId id : ids) {
        auto it = std::find_if(observers_.begin(), observers_.end(),
                               [id](const auto& observer) { return observer.first == id; });
        if (it == observers_.end()) {
            continue; // unobserved by an earlier callback of this round
        }
        // A copy, because the callback may unobserve itself and so destroy the original.
        std::function<void()> callback = it->second;
        callback();
    }
}

void StoneStore::fail(std::string message) {
    lastError_ = std::move(message);
}

void StoneStore::load() {
    loadNow();
    notify();
}

void StoneStore::loadNow() {
    data_ = StoneDataFile{};
    mustKeepCopy_ = false;
    unloadedBytes_.reset();

    FileRead read = readWholeFile(dataFilePath());
    if (!read.bytes) {
        if (isNoFile(read.error)) {
            return; // first run: nothing saved yet
        }
        // There is a file but it cannot be read: it may well hold the user's data, so it
        // must not be replaced by this empty store.
        mustKeepCopy_ = true;
        fail(std::string("Your saved data couldn't be read (") + std::strerror(read.error) +
             "). It was left as it is, and changes won't be saved until a copy of it can be "
             "kept as quarrydex-data.damaged.json.");
        return;
    }

    Result<StoneDataFile> decoded = StoneDataFile::decode(*read.bytes);
    if (decoded) {
        data_ = std::move(decoded).value();
        data_.version = 1;
        return;
    }
    Status copied = AtomicFile::write(root_ / damagedFileName, *read.bytes, saveOptions_);
    if (copied) {
        fail(damagedMessage);
        return;
    }
    // Without the copy, the next save would destroy the only trace of the old data.
    mustKeepCopy_ = true;
    unloadedBytes_ = std::move(read.bytes);
    fail("Your saved data couldn't be read, and a copy couldn't be kept as "
         "quarrydex-data.damaged.json (" +
         copied.error() +
         "). It was left as it is, and changes won't be saved until the copy can be made.");
}

Status StoneStore::keepCopyOfUnloadedFile() {
    if (!mustKeepCopy_) {
        return {};
    }
    if (!unloadedBytes_) {
        FileRead read = readWholeFile(dataFilePath());
        if (!read.bytes) {
            if (isNoFile(read.error)) {
                mustKeepCopy_ = false; // it has gone: nothing left to protect
                return {};
            }
            return Error{std::string("the saved data file can't be read, so it was left as it "
                                     "is (") +
                         std::strerror(read.error) + ")"};
        }
        unloadedBytes_ = std::move(read.bytes);
    }
    Status copied = AtomicFile::write(root_ / damagedFileName, *unloadedBytes_, saveOptions_);
    if (!copied) {
        return Error{"a copy of the unreadable data file couldn't be kept as "
                     "quarrydex-data.damaged.json (" +
                     copied.error() + ")"};
    }
    mustKeepCopy_ = false;
    unloadedBytes_.reset();
    return {};
}

void StoneStore::save() {
    std::optional<std::string> before = lastError_;
    saveNow();
    if (lastError_ != before) {
        notify();
    }
}

bool StoneStore::saveNow() {
    Result<std::string> text = data_.encode();
    Status status = text ? Status{} : Status{Error{text.error()}};
    if (status) {
        std::error_code ec;
        fs::create_directories(root_, ec);
        if (ec) {
            status = Error{ec.message()};
        }
    }
    if (status) {
        status = keepCopyOfUnloadedFile();
    }
    if (status) {
        status = AtomicFile::write(dataFilePath(), *text, saveOptions_);
    }
    if (!status) {
        fail("Couldn't save: " + status.error());
        return false;
    }
    removeReleasedPhotos();
    return true;
}

void StoneStore::saveAndNotify() {
    saveNow();
    notify();
}

bool StoneStore::isPhotoInUse(const std::string& file) const {
    auto uses = [&](const auto& entry) { return entry.photoFile == file; };
    return std::any_of(data_.collection.begin(), data_.collection.end(), uses) ||
           std::any_of(data_.history.begin(), data_.history.end(), uses);
}

void StoneStore::releasePhoto(const std::optional<std::string>& file) {
    if (file && isBareName(*file)) {
        releasedPhotos_.push_back(*file);
    }
}

void StoneStore::removeReleasedPhotos() {
    if (photoHolds_ > 0) {
        return; // kept in releasedPhotos_ until the last hold ends
    }
    std::vector<std::string> released = std::move(releasedPhotos_);
    releasedPhotos_.clear();
    for (const std::string& file : released) {
        // Checked now rather than at release: a record added since may use the file again.
        if (!isPhotoInUse(file)) {
            ::unlink((photosFolder() / file).c_str()); // a leftover file is harmless
        }
    }
}

void StoneStore::add(CollectionEntry entry) {
    data_.collection.insert(data_.collection.begin(), std::move(entry));
    saveAndNotify();
}

void StoneStore::update(const CollectionEntry& entry) {
    auto it = findById(data_.collection, entry.id);
    if (it == data_.collection.end()) {
        return;
    }
    std::optional<std::string> previousPhoto = it->photoFile;
    *it = entry;
    releasePhoto(previousPhoto);
    saveAndNotify();
}

void StoneStore::deleteEntry(const Uuid& id) {
    auto it = findById(data_.collection, id);
    if (it == data_.collection.end()) {
        return;
    }
    std::optional<std::string> photo = it->photoFile;
    data_.collection.erase(it);
    releasePhoto(photo);
    saveAndNotify();
}

void StoneStore::addHistory(HistoryEntry entry) {
    auto& history = data_.history;
    if (auto it = findById(history, entry.id); it != history.end()) {
        std::optional<std::string> previousPhoto = it->photoFile;
        *it = std::move(entry);
        releasePhoto(previousPhoto);
    } else {
        history.insert(history.begin(), std::move(entry));
        while (history.size() > historyCap) {
            releasePhoto(history.back().photoFile);
            history.pop_back();
        }
    }
    saveAndNotify();
}

void StoneStore::deleteHistory(const Uuid& id) {
    auto it = findById(data_.history, id);
    if (it == data_.history.end()) {
        return;
    }
    std::optional<std::string> photo = it->photoFile;
    data_.history.erase(it);
    releasePhoto(photo);
    saveAndNotify();
}

void StoneStore::clearHistory() {
    for (const HistoryEntry& entry : data_.history) {
        releasePhoto(entry.photoFile);
    }
    data_.history.clear();
    saveAndNotify();
}

void StoneStore::toggleFavorite(const std::string& id) {
    auto& favorites = data_.favorites;
    if (auto it = std::find(favorites.begin(), favorites.end(), id); it != favorites.end()) {
        favorites.erase(it);
    } else {
        favorites.push_back(id);
    }
    saveAndNotify();
}

void StoneStore::merge(std::vector<CollectionEntry> collection, std::vector<HistoryEntry> history,
                       const std::vector<std::string>& favorites) {
    auto& ownCollection = data_.collection;
    ownCollection.insert(ownCollection.end(), std::make_move_iterator(collection.begin()),
                         std::make_move_iterator(collection.end()));
    std::stable_sort(ownCollection.begin(), ownCollection.end(),
                     [](const CollectionEntry& a, const CollectionEntry& b) {
                         return a.dateAdded.sinceReference > b.dateAdded.sinceReference;
                     });

    auto& ownHistory = data_.history;
    ownHistory.insert(ownHistory.end(), std::make_move_iterator(history.begin()),
                      std::make_move_iterator(history.end()));
    std::stable_sort(ownHistory.begin(), ownHistory.end(),
                     [](const HistoryEntry& a, const HistoryEntry& b) {
                         return a.date.sinceReference > b.date.sinceReference;
                     });

    for (const std::string& id : favorites) {
        if (std::find(data_.favorites.begin(), data_.favorites.end(), id) ==
            data_.favorites.end()) {
            data_.favorites.push_back(id);
        }
    }
    saveAndNotify();
}

std::optional<std::string> StoneStore::storePhoto(std::string_view bytes, const Uuid& id) {
    std::string file = id.text() + ".jpg";
    AtomicFile::Options options = saveOptions_;
    options.replaceLink = true;
    std::error_code ec;
    fs::create_directories(photosFolder(), ec);
    return photoWritten(ec ? Status{Error{ec.message()}}
                           : AtomicFile::write(photosFolder() / file, bytes, options),
                        file);
}

std::optional<std::string> StoneStore::putPhoto(std::string_view bytes, const std::string& file) {
    AtomicFile::Options options = saveOptions_;
    options.replaceLink = true;
    options.flush = false;
    std::error_code ec;
    fs::create_directories(photosFolder(), ec);
    Status written = ec                  ? Status{Error{ec.message()}}
                     : !isBareName(file) ? Status{Error{"the photo's name is not a file name"}}
                                         : AtomicFile::write(photosFolder() / file, bytes, options);
    return photoWritten(written, file);
}

std::optional<std::string> StoneStore::movePhotoIn(const fs::path& from, const std::string& file) {
    std::error_code ec;
    fs::create_directories(photosFolder(), ec);
    if (ec) {
        return photoWritten(Error{ec.message()}, file);
    }
    if (!isBareName(file)) {
        return photoWritten(Error{"the photo's name is not a file name"}, file);
    }
    // rename() replaces a link of that name rather than writing through it.
    if (::rename(from.c_str(), (photosFolder() / file).c_str()) == 0) {
        return photoWritten(Status{}, file);
    }
    if (errno != EXDEV) {
        return photoWritten(Error{std::strerror(errno)}, file);
    }
    FileRead read = readWholeFile(from);
    if (!read.bytes) {
        return photoWritten(Error{std::strerror(read.error)}, file);
    }
    return putPhoto(*read.bytes, file);
}

std::optional<std::string> StoneStore::photoWritten(const Status& written,
                                                    const std::string& file) {
    if (!written) {
        fail("Couldn't save the photo: " + written.error());
        notify();
        return std::nullopt;
    }
    // A file of this name released earlier and not yet deleted is wanted again.
    std::erase(releasedPhotos_, file);
    return file;
}

Status StoneStore::flushPhotos() {
    return AtomicFile::flushFileSystem(photosFolder());
}

void StoneStore::reportPhotoError(const std::string& cause) {
    fail("Couldn't save the photo: " + cause);
    notify();
}

std::optional<std::string> StoneStore::photoData(const std::optional<std::string>& file) const {
    if (!file || !isBareName(*file)) {
        return std::nullopt;
    }
    return readWholeFile(photosFolder() / *file).bytes;
}

bool StoneStore::hasSamples() const {
    return std::any_of(data_.collection.begin(), data_.collection.end(),
                       [](const CollectionEntry& e) { return e.isSample.value_or(false); });
}

int StoneStore::removeSamples() {
    auto isSample = [](const auto& entry) { return entry.isSample.value_or(false); };
    std::size_t collectionBefore = data_.collection.size();
    std::size_t historyBefore = data_.history.size();
    for (const CollectionEntry& entry : data_.collection) {
        if (isSample(entry)) {
            releasePhoto(entry.photoFile);
        }
    }
    for (const HistoryEntry& entry : data_.history) {
        if (isSample(entry)) {
            releasePhoto(entry.photoFile);
        }
    }
    std::erase_if(data_.collection, isSample);
    std::erase_if(data_.history, isSample);
    int removed = static_cast<int>(collectionBefore - data_.collection.size());
    if (removed == 0 && data_.history.size() == historyBefore) {
        return 0; // nothing to remove: no save, no notice
    }
    saveAndNotify();
    return removed;
}

} // namespace quarrydex
