#include "store/atomic_file.h"
#include "store/data_folder_lock.h"
#include "store/stone_store.h"
#include "support/temp_dir.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using Kind = DataFolderLock::Failure::Kind;
using test::TempDir;

bool heldElsewhere(const fs::path& root) {
    Result<DataFolderLock, DataFolderLock::Failure> lock = DataFolderLock::acquire(root);
    return !lock && lock.error().kind == Kind::heldElsewhere;
}

TEST(DataFolderLock, a_second_lock_on_the_folder_is_refused_until_the_first_goes) {
    TempDir dir;
    {
        Result<DataFolderLock, DataFolderLock::Failure> first =
            DataFolderLock::acquire(dir / "new" / "root");
        ASSERT_TRUE(first) << first.error().message;
        EXPECT_TRUE(heldElsewhere(dir / "new" / "root"));
        EXPECT_FALSE(heldElsewhere(dir / "other")) << "another folder is free";
        DataFolderLock moved = std::move(first).value();
        EXPECT_TRUE(heldElsewhere(dir / "new" / "root"));
    }
    EXPECT_FALSE(heldElsewhere(dir / "new" / "root"));

    test::writeFile(dir / "a-file", "");
    Result<DataFolderLock, DataFolderLock::Failure> notAFolder =
        DataFolderLock::acquire(dir / "a-file");
    ASSERT_FALSE(notAFolder);
    EXPECT_EQ(notAFolder.error().kind, Kind::unavailable);
}

// Another running copy holds it; once that process is killed, the folder is free again.
TEST(DataFolderLock, a_lock_held_by_a_killed_process_is_free_again) {
    TempDir dir;
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        auto lock = DataFolderLock::acquire(dir.path());
        char byte = lock ? 'y' : 'n';
        (void)!::write(ready[1], &byte, 1);
        ::pause();
        ::_exit(0);
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ::close(ready[0]);
    ::close(ready[1]);
    ASSERT_EQ(byte, 'y');
    EXPECT_TRUE(heldElsewhere(dir.path()));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_FALSE(heldElsewhere(dir.path()));
}

TEST(DataFolderLock, leftovers_of_a_killed_run_are_swept_and_nothing_else) {
    TempDir dir;
    StoneStore store(dir.path());
    store.toggleFavorite("gold");
    const fs::path photos = store.photosFolder();
    test::writeFile(photos / "A.jpg", "photo");
    test::writeFile(photos / ".A.jpg.tmp-x1Y2z3", "half a photo");
    test::writeFile(dir / ".quarrydex-data.json.tmp-AbC123", "half a data file");
    test::writeFile(dir / ".quarrydex-data.damaged.json.tmp-AbC123", "half a copy");
    fs::create_directories(dir / ".quarrydex-restore-Qw3rty" / "inside");
    test::writeFile(dir / ".quarrydex-restore-Qw3rty" / "item-0", "staged");
    // Not ours, or not of that shape: kept.
    test::writeFile(dir / "notes.txt.tmp-AbC123", "a user's file");
    test::writeFile(dir / ".other.json.tmp-AbC123", "another program's file");
    test::writeFile(photos / ".tmp-AbC123", "no name before the marker");

    StoneStore::removeLeftovers(dir.path());
    EXPECT_EQ(test::namesIn(dir.path()),
              (std::set<std::string>{"Photos", "quarrydex-data.json", "notes.txt.tmp-AbC123",
                                     ".other.json.tmp-AbC123"}));
    EXPECT_EQ(test::namesIn(photos), (std::set<std::string>{"A.jpg", ".tmp-AbC123"}));
    StoneStore again(dir.path());
    EXPECT_EQ(again.favorites(), std::vector<std::string>{"gold"});
}

} // namespace
} // namespace quarrydex
