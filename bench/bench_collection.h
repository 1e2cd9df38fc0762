#pragma once
// The large collection both backup benchmarks work on, and their memory reading.

#include "store/stone_store.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace quarrydex::bench {

inline double peakMiB() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0; // kilobytes on Linux
}

// Random-looking bytes, as JPEG data is: nothing for Base64 or the disk to take shortcuts on.
inline void fillPhoto(std::string& bytes, std::uint64_t seed) {
    std::uint64_t x = seed * 0x9E3779B97F4A7C15ull + 1;
    for (std::size_t i = 0; i + 8 <= bytes.size(); i += 8) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        std::memcpy(bytes.data() + i, &x, 8);
    }
}

inline bool writeWhole(const std::filesystem::path& file, const std::string& bytes) {
    int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        return false;
    }
    bool ok = ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    return ::close(fd) == 0 && ok;
}

// A store under dir/"data" with `items` pieces, each with its own photo file. The photo
// files are written directly (the store's own path would fsync each one, which only
// slows the setup down).
inline bool setUpCollection(const std::filesystem::path& dir, int items, std::size_t photoBytes) {
    StoneStore store(dir / "data");
    std::vector<CollectionEntry> entries;
    std::string photo(photoBytes, '\0');
    Timestamp start = Timestamp::now();
    for (int i = 0; i < items; ++i) {
        CollectionEntry entry;
        entry.name = "Piece " + std::to_string(i);
        entry.location = "Quarry road, bench " + std::to_string(i % 17);
        entry.notes = "Collected for the backup benchmark.";
        entry.specimenID = "quartz";
        entry.confidence = 0.5;
        entry.dateAdded = start.plusSeconds(-60.0 * i);
        entry.photoFile = entry.id.text() + ".jpg";
        fillPhoto(photo, static_cast<std::uint64_t>(i));
        if (!writeWhole(store.photosFolder() / *entry.photoFile, photo)) {
            std::fprintf(stderr, "cannot write a photo into %s\n", dir.c_str());
            return false;
        }
        entries.push_back(std::move(entry));
    }
    store.merge(std::move(entries), {}, {"quartz"});
    if (store.lastError()) {
        std::fprintf(stderr, "%s\n", store.lastError()->c_str());
        return false;
    }
    return true;
}

} // namespace quarrydex::bench
