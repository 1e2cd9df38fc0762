#pragma once
// What a restore added and what it found already there (see BackupCodec::restore).

#include <string>

namespace quarrydex {

struct RestoreReport {
    int collectionAdded = 0;
    int historyAdded = 0;
    int favoritesAdded = 0;
    // Collection and history records of the backup whose id was already in the store.
    int skippedExisting = 0;

    // The sentence shown after a restore, e.g. "Restored 2 collection item(s), 1 history
    // entry and 0 favorite(s). 0 item(s) were already here and were left untouched."
    std::string summary() const;

    bool operator==(const RestoreReport&) const = default;
};

} // namespace quarrydex
