#pragma once
// The user's collection, identification history and favorites, kept in one data file
// ("quarrydex-data.json") under a root folder, with their photos as separate files in the
// folder "Photos" beside it.
//
// One StoneStore per run, owned by the application model. Every change is saved at once,
// atomically, as the whole file; there is no close. Failures never throw: they set
// lastError() with the sentence to show, and the in-memory lists keep the change so that
// the next successful save writes it. Not thread-safe: everything runs on the main thread,
// observers included.

#include "store/atomic_file.h"
#include "store/records.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

class StoneStore {
public:
    using ObserverId = std::uint64_t;

    // The per-user data folder: $XDG_DATA_HOME/Quarrydex, else ~/.local/share/Quarrydex.
    static std::filesystem::path defaultRoot();

    // Removes what a killed run can leave in the data folder `root`: the atomic writer's
    // temporary files beside the data file and in the photo folder, and restore's staging
    // folders. Only while holding the folder's DataFolderLock, so that no running copy is
    // still writing them. Failures are ignored.
    static void removeLeftovers(const std::filesystem::path& root);

    // Remembers `root`, creates its "Photos" folder if it can (a failure shows up at the
    // first photo write instead) and loads the data file.
    explicit StoneStore(std::filesystem::path root);
    StoneStore(const StoneStore&) = delete;
    StoneStore& operator=(const StoneStore&) = delete;

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path photosFolder() const;

    // Newest dateAdded first as entries are added.
    const std::vector<CollectionEntry>& collection() const { return data_.collection; }
    // Newest first, at most 300 entries after each addHistory.
    const std::vector<HistoryEntry>& history() const { return data_.history; }
    // Each species id at most once, in the order of starring.
    const std::vector<std::string>& favorites() const { return data_.favorites; }
    // The last failure as a sentence for the user. Set by a failed load, save or photo
    // write; a later success does not clear it, only whoever shows it does.
    const std::optional<std::string>& lastError() const { return lastError_; }
    void clearLastError();

    // Change notices: `callback` runs synchronously after every change of the lists or of
    // lastError (once per operation, after its save). A callback may call back into the
    // store and may unobserve itself or others.
    ObserverId observe(std::function<void()> callback);
    void unobserve(ObserverId id);

    // Replaces the lists with the data file's content. No file: empty, no message. A file
    // that cannot be decoded: empty, a byte-for-byte copy kept as
    // "quarrydex-data.damaged.json", and lastError says so. A data file that was not
    // loaded is never overwritten until such a copy exists.
    void load();
    // Writes the whole data file atomically; on failure sets lastError to
    // "Couldn't save: <cause>". Every change below already calls it.
    void save();

    // Inserts at the front.
    void add(CollectionEntry entry);
    // Replaces the first entry with the same id; does nothing (and saves nothing) if there
    // is none. A photo the entry no longer uses is released.
    void update(const CollectionEntry& entry);
    // Removes the first entry with that id and releases its photo.
    void deleteEntry(const Uuid& id);
    // Replaces an entry with the same id in place; otherwise inserts at the front and drops
    // the oldest entries beyond 300, releasing their photos.
    void addHistory(HistoryEntry entry);
    void deleteHistory(const Uuid& id);
    // Empties the history and releases its photos; collection and favorites stay.
    void clearHistory();
    // Removes the id if present, else appends it.
    void toggleFavorite(const std::string& id);
    // For restore: appends the records, re-sorts collection and history newest first (stable),
    // appends favorites not yet present, saves once. Checks no ids and applies no cap.
    void merge(std::vector<CollectionEntry> collection, std::vector<HistoryEntry> history,
               const std::vector<std::string>& favorites);

    // Writes `bytes` atomically as "Photos/<ID>.jpg", replacing a file of that name, and
    // returns the file name. On failure sets lastError to "Couldn't save the photo: <cause>"
    // and returns none.
    std::optional<std::string> storePhoto(std::string_view bytes, const Uuid& id);
    // The bytes of a photo in the photo folder. None for no name, for a name that is not a
    // bare file name ("/" anywhere, "", ".", ".."), or when the file cannot be read.
    std::optional<std::string> photoData(const std::optional<std::string>& file) const;

    // For restoring many photos: each is put in place without being flushed to disk, then
    // flushPhotos() flushes them together, before any saved record names them. `file` is a
    // bare name chosen by the caller; a file of that name is replaced (and a symbolic link
    // there replaced, not followed). On failure they set lastError to "Couldn't save the
    // photo: <cause>" and return none.
    std::optional<std::string> putPhoto(std::string_view bytes, const std::string& file);
    // Moves the file `from` in as `file` (a rename, so it takes no more space; copied when
    // it is on another disk).
    std::optional<std::string> movePhotoIn(const std::filesystem::path& from,
                                           const std::string& file);
    Status flushPhotos();
    // True while some collection or history entry names `file`.
    bool isPhotoInUse(const std::string& file) const;
    // Sets lastError to "Couldn't save the photo: <cause>" for a photo that never reached
    // the store (restore could not set it aside).
    void reportPhotoError(const std::string& cause);

    // True when some collection entry is marked as a sample.
    bool hasSamples() const;
    // Removes the collection and history entries marked as samples (and only those) and
    // releases their photos; returns how many collection entries went.
    int removeSamples();

    // While any hold lives, photo files that no record uses any more stay on disk, so work on
    // another thread that read the records earlier (a backup) can still read their photos.
    // They are deleted by the first save after the last hold ends. Holds are made and ended
    // on the store's thread.
    void holdPhotoFiles() { ++photoHolds_; }
    void releasePhotoFiles() {
        if (photoHolds_ > 0) {
            --photoHolds_;
        }
    }

    // Tests only: options for every file the store writes (e.g. a simulated full disk).
    void setSaveOptions(AtomicFile::Options options) { saveOptions_ = options; }
    const AtomicFile::Options& saveOptions() const { return saveOptions_; }

private:
    std::filesystem::path dataFilePath() const;
    bool saveNow();
    Status keepCopyOfUnloadedFile();
    void loadNow();
    void saveAndNotify();
    void notify();
    void fail(std::string message);
    std::optional<std::string> photoWritten(const Status& written, const std::string& file);
    void releasePhoto(const std::optional<std::string>& file);
    void removeReleasedPhotos();

    std::filesystem::path root_;
    StoneDataFile data_;
    std::optional<std::string> lastError_;
    AtomicFile::Options saveOptions_;

    // Set while the file on disk holds data this store did not load (it could not be read
    // or decoded) and no copy of it exists yet: saving is refused until the copy is made.
    bool mustKeepCopy_ = false;
    std::optional<std::string> unloadedBytes_; // what was read, when it could be read

    // Photos no record refers to any more. They are deleted only after a save, so the data
    // file on disk never names a photo that is gone.
    std::vector<std::string> releasedPhotos_;
    int photoHolds_ = 0; // see holdPhotoFiles()

    std::vector<std::pair<ObserverId, std::function<void()>>> observers_;
    ObserverId nextObserverId_ = 1;
};

} // namespace quarrydex
