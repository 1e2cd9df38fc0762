#include "store/stone_store.h"
#include "support/temp_dir.h"
#include "ui/windowed_app.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

using quarrydex::Launcher;
using quarrydex::ui::missingDisplayMessage;

namespace {

auto environment(std::map<std::string, std::string> values) {
    return [values](const char* name) {
        auto it = values.find(name);
        return it == values.end() ? std::string() : it->second;
    };
}

} // namespace

TEST(UiStart, without_any_display_the_message_names_the_problem_and_the_selftest) {
    auto message = missingDisplayMessage("", environment({}));
    ASSERT_TRUE(message);
    EXPECT_NE(message->find("there is no display"), std::string::npos);
    EXPECT_NE(message->find("--selftest"), std::string::npos);
}

TEST(UiStart, a_display_or_a_platform_without_one_is_enough) {
    EXPECT_FALSE(missingDisplayMessage("", environment({{"DISPLAY", ":0"}})));
    EXPECT_FALSE(missingDisplayMessage("", environment({{"WAYLAND_DISPLAY", "wayland-0"}})));
    EXPECT_FALSE(missingDisplayMessage("offscreen", environment({})));
    EXPECT_FALSE(missingDisplayMessage("vnc", environment({})));
    EXPECT_FALSE(missingDisplayMessage("xcb", environment({{"DISPLAY", ":1"}})));
    EXPECT_FALSE(missingDisplayMessage("wayland;xcb", environment({{"DISPLAY", ":1"}})));
}

TEST(UiStart, a_window_system_asked_for_by_name_needs_its_own_display) {
    EXPECT_TRUE(missingDisplayMessage("xcb", environment({{"WAYLAND_DISPLAY", "wayland-0"}})));
    EXPECT_TRUE(missingDisplayMessage("wayland", environment({{"DISPLAY", ":0"}})));
}

TEST(UiStart, no_display_ends_the_start_with_status_1_before_any_window) {
    std::string display = std::getenv("DISPLAY") ? std::getenv("DISPLAY") : "";
    ::unsetenv("DISPLAY");
    testing::internal::CaptureStderr();
    int status = quarrydex::ui::runWindowedApplication(Launcher({"quarrydex", "-platform", "xcb"}));
    std::string printed = testing::internal::GetCapturedStderr();
    if (!display.empty()) {
        ::setenv("DISPLAY", display.c_str(), 1);
    }
    EXPECT_EQ(status, 1);
    EXPECT_NE(printed.find("--selftest"), std::string::npos) << printed;
}

TEST(UiStart, the_launcher_starts_the_window_unless_asked_for_the_selftest) {
    static int started = 0;
    auto start = [](const Launcher&) {
        ++started;
        return 7;
    };
    EXPECT_EQ(Launcher({"quarrydex", "--data-root", "/x"}).run(start), 7);
    EXPECT_EQ(started, 1);

    quarrydex::test::TempDir empty; // no library: the self-test fails quickly
    ::setenv("QUARRYDEX_RESOURCES", empty.path().c_str(), 1);
    testing::internal::CaptureStdout();
    int status = Launcher({"quarrydex", "--selftest"}).run(start);
    testing::internal::GetCapturedStdout();
    ::unsetenv("QUARRYDEX_RESOURCES");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(started, 1) << "the self-test never opens the window";
}

TEST(UiStart, the_data_root_is_taken_from_the_command_line_against_the_current_folder) {
    auto current = std::filesystem::current_path();
    EXPECT_EQ(quarrydex::ui::dataRoot(Launcher({"quarrydex", "--data-root", "stones"})),
              current / "stones");
    EXPECT_EQ(quarrydex::ui::dataRoot(Launcher({"quarrydex", "--data-root", "/srv/q"})),
              std::filesystem::path("/srv/q"));
    EXPECT_EQ(quarrydex::ui::dataRoot(Launcher({"quarrydex", "--data-root"})),
              quarrydex::StoneStore::defaultRoot());
    EXPECT_EQ(quarrydex::ui::dataRoot(Launcher({"quarrydex", "--screenshots", "/tmp/s"})),
              quarrydex::StoneStore::defaultRoot());
}
