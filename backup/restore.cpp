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
// crafted backup); otherwise a fresh name.
class PhotoNames {
public:
    explicit PhotoNames(const StoneStore& store) {
        for (const CollectionEntry& entry : store.collection()) {
            remember(entry.photoFile);
        }
        for (const HistoryEntry& entry : store.history()) {
            remember(entry.photoFile);
        }
    }

    std::string forRecord(const Uuid& id) const {
        std::string name = id.text() + ".jpg";
        while (used_.count(name) != 0) {
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
    std::unordered_set<std::string> used_;
};

RestoreReport restoreRecords(const BackupArchive& archive, StoneStore& store,
                             const HasPhoto& itemHasPhoto, const PlacePhoto& placeItemPhoto,
                             const HasPhoto& historyHasPhoto, const PlacePhoto& placeHistoryPhoto) {
    // Ids are taken before anything is added and grow with each record added, so a record
    // whose id appears twice in one backup is added once and then counted as already here.
    std::unordered_set<Uuid> collectionIds;
    for (const CollectionEntry& entry : store.collection()) {
        collectionIds.insert(entry.id);
    }
    std::unordered_set<Uuid> historyIds;
    for (const HistoryEntry& entry : store.history()) {
        historyIds.insert(entry.id);
    }
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

    RestoreReport report;
    std::vector<CollectionEntry> collection;
    for (std::size_t i = 0; i < archive.items.size(); ++i) {
        const BackupArchive::Entry& item = archive.items[i];
        if (!collectionIds.insert(item.id).second) {
            ++report.skippedExisting;
            continue;
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
        entry.photoFile = photoFor(item.id, i, itemHasPhoto, placeItemPhoto);
        collection.push_back(std::move(entry));
    }

    std::vector<HistoryEntry> history;
    if (archive.history) {
        for (std::size_t i = 0; i < archive.history->size(); ++i) {
            const BackupArchive::HistoryItem& item = (*archive.history)[i];
            if (!historyIds.insert(item.id).second) {
                ++report.skippedExisting;
                continue;
            }
            HistoryEntry entry;
            entry.id = item.id;
            entry.date = item.date;
            entry.answers = item.answers;
            entry.results = item.results;
            entry.level = item.level;
            entry.photoFile = photoFor(item.id, i, historyHasPhoto, placeHistoryPhoto);
            history.push_back(std::move(entry));
        }
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

    std::vector<std::string> favorites;
    if (archive.favorites) {
        const std::vector<std::string>& own = store.favorites();
        for (const std::string& id : *archive.favorites) {
            if (std::find(own.begin(), own.end(), id) == own.end() &&
                std::find(favorites.begin(), favorites.end(), id) == favorites.end()) {
                favorites.push_back(id);
            }
        }
    }

    report.collectionAdded = static_cast<int>(collection.size());
    report.historyAdded = static_cast<int>(history.size());
    report.favoritesAdded = static_cast<int>(favorites.size());
    store.merge(std::move(collection), std::move(history), favorites);
    return report;
}

} // namespace

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
