#include "app/launcher.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using quarrydex::Launcher;

TEST(CommandLine, argument_after_takes_the_first_occurrence_and_nothing_when_last) {
    Launcher twice({"quarrydex", "--data-root", "/a", "--data-root", "/b"});
    EXPECT_EQ(twice.argument("--data-root"), "/a");
    Launcher last({"quarrydex", "--data-root"});
    EXPECT_FALSE(last.argument("--data-root"));
    Launcher flagValue({"quarrydex", "--data-root", "--selftest"});
    EXPECT_EQ(flagValue.argument("--data-root"), "--selftest");
    EXPECT_FALSE(Launcher({"quarrydex"}).argument("--data-root"));
    EXPECT_EQ(Launcher({"--data-root", "x"}).argument("--data-root"), "x") << "argument 0 counts";
}

TEST(CommandLine, only_the_exact_selftest_switch_counts) {
    EXPECT_TRUE(Launcher({"quarrydex", "--data-root", "/x", "--selftest"}).has("--selftest"));
    EXPECT_TRUE(Launcher({"--selftest"}).has("--selftest"));
    EXPECT_FALSE(Launcher({"quarrydex", "--selftest=1"}).has("--selftest"));
    EXPECT_FALSE(Launcher({"quarrydex", "--SELFTEST"}).has("--selftest"));
}

TEST(CommandLine, the_window_starts_unless_asked_for_the_selftest_which_fails_with_status_one) {
    static int started = 0;
    auto start = [](const Launcher&) {
        ++started;
        return 7;
    };
    EXPECT_EQ(Launcher({"quarrydex", "--data-root", "/x"}).run(start), 7);
    EXPECT_EQ(started, 1);

    // An empty resource folder: no library and no samples, so checks fail.
    quarrydex::test::TempDir empty;
    quarrydex::test::ScopedEnv resources("QUARRYDEX_RESOURCES", empty.path().string());
    testing::internal::CaptureStdout();
    int status = Launcher({"quarrydex", "--selftest"}).run(start);
    std::string report = testing::internal::GetCapturedStdout();
    EXPECT_EQ(status, 1);
    EXPECT_EQ(started, 1) << "the self-test never opens the window";
    EXPECT_TRUE(report.ends_with(" failed\n")) << "the report and one newline";
    EXPECT_NE(report.find("\nRESULT: "), std::string::npos);
}
