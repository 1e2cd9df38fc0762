#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "store/stone_store.h"

#include <algorithm>
#include <unordered_set>

namespace quarrydex {

namespace {

// The photo bytes of items[index] or history[index], or none.
using PhotoOf = std::function<std::optional<std::string>(std::size_t index)>;

RestoreReport restoreRecords(const BackupArchive& archive, StoneStore& store,
                             const PhotoOf& itemPhoto, const PhotoOf& historyPhoto) {
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
        // Written before the merge; a photo that cannot be written leaves the record
        // without one, and storePhoto has set lastError.
        if (std::optional<std::string> bytes = itemPhoto(i)) {
            entry.photoFile = store.storePhoto(*bytes, item.id);
        }
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
            if (std::optional<std::string> bytes = historyPhoto(i)) {
                entry.photoFile = store.storePhoto(*bytes, item.id);
            }
            history.push_back(std::move(entry));
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
        archive, store, [&](std::size_t i) { return archive.items[i].photo; },
        [&](std::size_t i) { return (*archive.history)[i].photo; });
}

RestoreReport BackupCodec::restore(const StagedBackup& backup, StoneStore& store) {
    return restoreRecords(
        backup.archive(), store, [&](std::size_t i) { return backup.itemPhoto(i); },
        [&](std::size_t i) { return backup.historyPhoto(i); });
}

BackupResult<RestoreReport> BackupCodec::restoreFile(const std::filesystem::path& file,
                                                     StoneStore& store) {
    BackupResult<StagedBackup> staged = decodeFile(file, store.root());
    if (!staged) {
        return staged.error();
    }
    return restore(*staged, store);
}

} // namespace quarrydex
