#include "store/atomic_file.h"
#include "support/temp_dir.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::namesIn;
using test::readFile;
using test::TempDir;
using test::writeFile;

TEST(AtomicFile, new_file_is_user_only_and_a_replaced_file_keeps_its_permissions) {
    TempDir dir;
    ASSERT_TRUE(AtomicFile::write(dir / "data.json", "first"));
    EXPECT_EQ(fs::status(dir / "data.json").permissions(), fs::perms(0600));
    fs::permissions(dir / "data.json", fs::perms(0640));
    Status s = AtomicFile::write(dir / "data.json", "second");
    ASSERT_TRUE(s) << s.error();
    EXPECT_EQ(readFile(dir / "data.json"), "second");
    EXPECT_EQ(fs::status(dir / "data.json").permissions(), fs::perms(0640));
    EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"data.json"});
}

TEST(AtomicFile, symlink_stays_a_symlink_and_its_destination_is_replaced) {
    TempDir dir;
    fs::create_directory(dir / "real");
    writeFile(dir / "real" / "data.json", "old");
    fs::create_symlink("real/data.json", dir / "link.json");
    Status s = AtomicFile::write(dir / "link.json", "new");
    ASSERT_TRUE(s) << s.error();
    EXPECT_TRUE(fs::is_symlink(dir / "link.json"));
    EXPECT_EQ(readFile(dir / "real" / "data.json"), "new");
    EXPECT_EQ(namesIn(dir / "real"), std::set<std::string>{"data.json"});
}

TEST(AtomicFile, save_failure_leaves_original_untouched_and_no_temporary_file) {
    TempDir dir;
    const std::string replacement(10000, 'x');
    writeFile(dir / "data.json", "original");
    // At the very start, in the middle, and one byte short of the end.
    for (std::size_t failAfter : {std::size_t{0}, std::size_t{4096}, replacement.size() - 1}) {
        Status s = AtomicFile::write(dir / "data.json", replacement, {.failAfterBytes = failAfter});
        EXPECT_EQ(s.error(), "No space left on device") << "failAfterBytes " << failAfter;
        EXPECT_EQ(readFile(dir / "data.json"), "original");
        EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"data.json"});
    }
}

TEST(AtomicFile, target_that_cannot_be_written_reports_the_system_error_and_stays) {
    TempDir dir;
    EXPECT_EQ(AtomicFile::write(dir / "missing" / "data.json", "x").error(),
              "No such file or directory");
    fs::create_directory(dir / "data.json");
    EXPECT_EQ(AtomicFile::write(dir / "data.json", "x").error(), "Is a directory");
    EXPECT_TRUE(fs::is_directory(dir / "data.json"));
    EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"data.json"});
}

TEST(AtomicFile, streaming_writer_that_fails_or_is_dropped_leaves_no_trace) {
    TempDir dir;
    writeFile(dir / "big.json", "old");
    {
        AtomicFile dropped(dir / "big.json");
        ASSERT_TRUE(dropped.append("never committed"));
    }
    AtomicFile failing(dir / "big.json", {.failAfterBytes = 5});
    ASSERT_TRUE(failing.append("1234"));
    EXPECT_FALSE(failing.append("5678"));
    EXPECT_EQ(failing.commit().error(), "No space left on device") << "the failure sticks";
    EXPECT_EQ(readFile(dir / "big.json"), "old");
    EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"big.json"});
}

} // namespace
} // namespace quarrydex
