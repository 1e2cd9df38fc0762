#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "store/stone_store.h"

#include <algorithm>
#include <functional>
#include <unistd.h>
#include <unordered_set>

namespace quarrydex {

namespace {

// Puts the photo of items[index] or history[index] into the store as `file` without
// flushing it; returns the name, or none when the record has no photo or it could not be
// written (the store's lastError then says why).
using PlacePhoto =
    std::function<std::optional<std::string>(std::size_t index, const std::string& file)>;
// Whether items[index] or history[index] has a photo.
using HasPhoto = std::function<bool(std::size_t index)>;

// The names photos are written under. A restore never overwrites a photo it does not own:
// "<id>.jpg" is taken only while no record of the store, and no record restored so far,
// uses that name (a collection and a history entry may share an id, by accident or in a
// crafted backup) and no file of that name is in the photo folder; otherwise a fresh name.
class PhotoNames {
public:
    explicit PhotoNames(const StoneStore& store) : folder_(store.photosFolder()) {
        for (const CollectionEntry& entry : store.collection()) {
            remember(entry.photoFile);
        }
        for (const HistoryEntry& entry : store.history()) {
            remember(entry.photoFile);
        }
    }

    std::string forRecord(const Uuid& id) const {
        std::string name = id.text() + ".jpg";
        while (used_.count(name) != 0 || isTaken(name)) {
            name = Uuid::random().text() + ".jpg";
        }
        return name;
    }

    void remember(const std::optional<std::string>& file) {
        if (file) {
            used_.insert(*file);
        }
    }

private:
    // A file (or a link, even a dangling one) of that name is already in the photo folder.
    bool isTaken(const std::string& name) const {
        std::error_code ec;
        return std::filesystem::exists(std::filesystem::symlink_status(folder_ / name, ec));
    }

    std::filesystem::path folder_;
    std::unordered_set<std::string> used_;
};

// Which records of a backup a restore adds: collection and history records whose id the
// store lacks (each id once, so a repeat within the backup counts as already here) and
// favorites the store lacks (each once; those already present are not counted).
struct Additions {
    std::vector<std::size_t> items;   // indexes into archive.items
    std::vector<std::size_t> history; // indexes into *archive.history
    std::vector<std::string> favorites;
    int skippedExisting = 0;

    Additions(const BackupArchive& archive, const StoneStore& store) {
        // Ids are taken before anything is added and grow with each record added.
        std::unordered_set<Uuid> collectionIds;
        for (const CollectionEntry& entry : store.collection()) {
            collectionIds.insert(entry.id);
        }
        for (std::size_t i = 0; i < archive.items.size(); ++i) {
            if (collectionIds.insert(archive.items[i].id).second) {
                items.push_back(i);
            } else {
                ++skippedExisting;
            }
        }
        if (archive.history) {
            std::unordered_set<Uuid> historyIds;
            for (const HistoryEntry& entry : store.history()) {
                historyIds.insert(entry.id);
            }
            for (std::size_t i = 0; i < archive.history->size(); ++i) {
                if (historyIds.insert((*archive.history)[i].id).second) {
                    history.push_back(i);
                } else {
                    ++skippedExisting;
                }
            }
        }
        if (archive.favorites) {
            const std::vector<std::string>& own = store.favorites();
            for (const std::string& id : *archive.favorites) {
                if (std::find(own.begin(), own.end(), id) == own.end() &&
                    std::find(favorites.begin(), favorites.end(), id) == favorites.end()) {
                    favorites.push_back(id);
                }
            }
        }
    }

    RestoreReport report() const {
        return {static_cast<int>(items.size()), static_cast<int>(history.size()),
                static_cast<int>(favorites.size()), skippedExisting};
    }
};

RestoreReport restoreRecords(const BackupArchive& archive, StoneStore& store,
                             const HasPhoto& itemHasPhoto, const PlacePhoto& placeItemPhoto,
                             const HasPhoto& historyHasPhoto, const PlacePhoto& placeHistoryPhoto) {
    Additions additions(archive, store);
    PhotoNames names(store);
    std::vector<std::string> placed; // photos written, not yet flushed

    auto photoFor = [&](const Uuid& id, std::size_t index, const HasPhoto& has,
                        const PlacePhoto& place) -> std::optional<std::string> {
        if (!has(index)) {
            return std::nullopt;
        }
        // A photo that cannot be written leaves the record without one, and the store has
        // set lastError.
        std::optional<std::string> file = place(index, names.forRecord(id));
        names.remember(file);
        if (file) {
            placed.push_back(*file);
        }
        return file;
    };

    std::vector<CollectionEntry> collection;
    collection.reserve(additions.items.size());
    for (std::size_t i : additions.items) {
        const BackupArchive::Entry& item = archive.items[i];
        CollectionEntry entry;
        entry.id = item.id;
        entry.specimenID = item.specimenID;
        entry.name = item.name;
        entry.dateAdded = item.dateAdded;
        entry.acquisition = item.acquisition;
        entry.location = item.location;
        entry.notes = item.notes;
        entry.confidence = item.confidence;
        entry.photoFile = photoFor(item.id, i, itemHasPhoto, placeItemPhoto);
        collection.push_back(std::move(entry));
    }

    std::vector<HistoryEntry> history;
    history.reserve(additions.history.size());
    for (std::size_t i : additions.history) {
        const BackupArchive::HistoryItem& item = (*archive.history)[i];
        HistoryEntry entry;
        entry.id = item.id;
        entry.date = item.date;
        entry.answers = item.answers;
        entry.results = item.results;
        entry.level = item.level;
        entry.photoFile = photoFor(item.id, i, historyHasPhoto, placeHistoryPhoto);
        history.push_back(std::move(entry));
    }

    // The photos reach the disk together, before the data file names them. If they cannot,
    // the records are restored without them.
    if (!placed.empty()) {
        if (Status flushed = store.flushPhotos(); !flushed) {
            std::unordered_set<std::string> unflushed(placed.begin(), placed.end());
            auto drop = [&](auto& entry) {
                if (entry.photoFile && unflushed.count(*entry.photoFile) != 0) {
                    entry.photoFile.reset();
                }
            };
            std::for_each(collection.begin(), collection.end(), drop);
            std::for_each(history.begin(), history.end(), drop);
            for (const std::string& file : placed) {
                ::unlink((store.photosFolder() / file).c_str());
            }
            store.reportPhotoError(flushed.error());
        }
    }

    RestoreReport report = additions.report();
    store.merge(std::move(collection), std::move(history), additions.favorites);
    return report;
}

} // namespace

RestoreReport BackupCodec::preview(const BackupArchive& archive, const StoneStore& store) {
    return Additions(archive, store).report();
}

RestoreReport BackupCodec::restore(const BackupArchive& archive, StoneStore& store) {
    return restoreRecords(
        archive, store, [&](std::size_t i) { return archive.items[i].photo.has_value(); },
        [&](std::size_t i, const std::string& file) {
            return store.putPhoto(*archive.items[i].photo, file);
        },
        [&](std::size_t i) { return (*archive.history)[i].photo.has_value(); },
        [&](std::size_t i, const std::string& file) {
            return store.putPhoto(*(*archive.history)[i].photo, file);
        });
}

RestoreReport BackupCodec::restore(const StagedBackup& backup, StoneStore& store) {
    // Each staged photo is moved into the store rather than copied, so a restore needs the
    // photos' size in free space once, not twice.
    auto move = [&](const std::optional<std::filesystem::path>& staged, const std::string& file) {
        return staged ? store.movePhotoIn(*staged, file) : std::nullopt;
    };
    RestoreReport report = restoreRecords(
        backup.archive(), store, [&](std::size_t i) { return bool(backup.itemPhotoFile(i)); },
        [&](std::size_t i, const std::string& file) { return move(backup.itemPhotoFile(i), file); },
        [&](std::size_t i) { return bool(backup.historyPhotoFile(i)); },
        [&](std::size_t i, const std::string& file) {
            return move(backup.historyPhotoFile(i), file);
        });
    if (backup.photoProblem()) {
        store.reportPhotoError(*backup.photoProblem());
    }
    return report;
}

BackupResult<RestoreReport> BackupCodec::restoreFile(const std::filesystem::path& file,
                                                     StoneStore& store) {
    BackupResult<StagedBackup> staged = decodeFile(file, store.root(), store.saveOptions());
    if (!staged) {
        return staged.error();
    }
    return restore(*staged, store);
}

} // namespace quarrydex
