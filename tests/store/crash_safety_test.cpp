// A writer process killed at random moments must leave a data file that reads back and
// holds the state just before or just after its last change.

#include "store/stone_store.h"
#include "support/temp_dir.h"

#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;

// Change k is one saved operation: every fourth one adds a collection entry named k, the
// others star the species "k". So the file's content tells how many changes it holds.
void applyChange(StoneStore& store, int k) {
    if (k % 4 == 0) {
        CollectionEntry entry;
        entry.name = std::to_string(k);
        entry.location = "test bench";
        entry.notes = std::string(2000, 'n'); // bigger files, longer writes to land in
        store.add(entry);
    } else {
        store.toggleFavorite(std::to_string(k));
    }
}

// The number of changes the file holds, or -1 when it is not exactly some state 0..k.
int changesIn(const StoneDataFile& file) {
    int k = static_cast<int>(file.favorites.size() + file.collection.size());
    std::vector<std::string> favorites;
    std::vector<std::string> names;
    for (int j = 1; j <= k; ++j) {
        if (j % 4 == 0) {
            names.insert(names.begin(), std::to_string(j));
        } else {
            favorites.push_back(std::to_string(j));
        }
    }
    std::vector<std::string> storedNames;
    for (const CollectionEntry& e : file.collection) {
        storedNames.push_back(e.name);
    }
    return favorites == file.favorites && names == storedNames ? k : -1;
}

// Runs in the child until killed: reports the count it starts from, then each change only
// once it is saved, so change k is never written before change k-1 is on disk.
[[noreturn]] void writeChangesForever(const fs::path& root, int report) {
    StoneStore store(root);
    if (store.lastError()) {
        ::_exit(2);
    }
    int k = static_cast<int>(store.favorites().size() + store.collection().size());
    for (;;) {
        if (::write(report, &k, sizeof k) != sizeof k) {
            ::_exit(4);
        }
        applyChange(store, ++k);
        if (store.lastError()) {
            ::_exit(3);
        }
    }
}

TEST(StoneStoreCrashSafety, killed_writer_leaves_the_state_before_or_after_its_last_change) {
    test::TempDir dir;
    std::mt19937 random(42);
    std::uniform_int_distribution<int> pauseMicroseconds(0, 8000);
    int known = 0; // changes the file was seen to hold after the previous round

    for (int round = 0; round < 80; ++round) {
        int pipeEnds[2];
        ASSERT_EQ(::pipe(pipeEnds), 0);
        pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(pipeEnds[0]);
            writeChangesForever(dir.path(), pipeEnds[1]);
        }
        ::close(pipeEnds[1]);

        // Let it load and start writing, then kill it wherever it happens to be.
        int confirmed = known;
        if (::read(pipeEnds[0], &confirmed, sizeof confirmed) == sizeof confirmed) {
            ::usleep(static_cast<useconds_t>(pauseMicroseconds(random)));
        }
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
            << "the writer stopped by itself with status " << WEXITSTATUS(status);
        for (int k = 0; ::read(pipeEnds[0], &k, sizeof k) == sizeof k;) {
            confirmed = k;
        }
        ::close(pipeEnds[0]);

        auto file = StoneDataFile::decode(test::readFile(dir / "quarrydex-data.json"));
        if (confirmed == 0 && !file) {
            continue; // killed before its first save: there is no file yet
        }
        ASSERT_TRUE(file) << "round " << round << ": " << file.error();
        int k = changesIn(*file);
        ASSERT_TRUE(k == confirmed || k == confirmed + 1)
            << "round " << round << ": the file holds " << k << " changes, " << confirmed
            << " were confirmed";
        known = k;
    }
}

} // namespace
} // namespace quarrydex
