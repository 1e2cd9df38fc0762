#include "backup/restore_report.h"

namespace quarrydex {

std::string RestoreReport::summary() const {
    if (collectionAdded + historyAdded + favoritesAdded == 0) {
        return "Nothing new to restore \u2014 everything in this backup is already here (" +
               std::to_string(skippedExisting) + " items checked).";
    }
    // The last sentence stays even for 0: the user sees that existing records were checked.
    return "Restored " + std::to_string(collectionAdded) + " collection item(s), " +
           std::to_string(historyAdded) +
           (historyAdded == 1 ? " history entry" : " history entries") + " and " +
           std::to_string(favoritesAdded) + " favorite(s). " + std::to_string(skippedExisting) +
           " item(s) were already here and were left untouched.";
}

} // namespace quarrydex
