#pragma once
// One running program per data folder. A second copy of the program on the same folder
// would load the data file too, and each copy's saves would then silently drop the
// other's changes; the windowed program takes this lock before it opens the store and
// refuses to start without it (the self-test opens no store and takes none).
//
// The lock is flock() on ".quarrydex.lock" in the data folder. The system drops it when
// the process ends, however it ends, so a killed program leaves no stale lock; and while
// it is held nothing else writes in the folder, so what a killed run left there can be
// swept (StoneStore::removeLeftovers). Move-only; the lock is released when the object
// goes away. Any thread.

#include "store/result.h"

#include <filesystem>
#include <string>

namespace quarrydex {

class DataFolderLock {
public:
    struct Failure {
        enum class Kind {
            heldElsewhere, // another running copy (or another lock in this process) holds it
            unavailable,   // the lock file cannot be made or locked (a read-only folder...)
        };
        Kind kind;
        std::string message; // the system's description, for unavailable
    };

    // Creates `root` with its parents when missing, then takes the lock without waiting.
    static Result<DataFolderLock, Failure> acquire(const std::filesystem::path& root);

    DataFolderLock(DataFolderLock&& other) noexcept;
    DataFolderLock& operator=(DataFolderLock&& other) noexcept;
    DataFolderLock(const DataFolderLock&) = delete;
    DataFolderLock& operator=(const DataFolderLock&) = delete;
    ~DataFolderLock();

    static constexpr const char* fileName = ".quarrydex.lock";

private:
    explicit DataFolderLock(int fd) : fd_(fd) {}
    void release();

    int fd_ = -1;
};

} // namespace quarrydex
