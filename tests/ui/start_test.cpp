#include "store/data_folder_lock.h"
#include "store/stone_store.h"
#include "support/temp_dir.h"
#include "ui/windowed_app.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <map>
#include <memory>

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

TEST(UiStart, without_a_usable_display_the_message_names_the_problem_and_the_selftest) {
    auto message = missingDisplayMessage("", environment({}));
    ASSERT_TRUE(message);
    EXPECT_NE(message->find("there is no display"), std::string::npos);
    EXPECT_NE(message->find("--selftest"), std::string::npos);
    // A window system asked for by name needs its own display.
    EXPECT_TRUE(missingDisplayMessage("xcb", environment({{"WAYLAND_DISPLAY", "wayland-0"}})));
    EXPECT_TRUE(missingDisplayMessage("wayland", environment({{"DISPLAY", ":0"}})));
    // A display, or a platform that needs none, is enough.
    EXPECT_FALSE(missingDisplayMessage("", environment({{"DISPLAY", ":0"}})));
    EXPECT_FALSE(missingDisplayMessage("", environment({{"WAYLAND_DISPLAY", "wayland-0"}})));
    EXPECT_FALSE(missingDisplayMessage("offscreen", environment({})));
    EXPECT_FALSE(missingDisplayMessage("xcb", environment({{"DISPLAY", ":1"}})));
    EXPECT_FALSE(missingDisplayMessage("wayland;xcb", environment({{"DISPLAY", ":1"}})));
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

// A second copy on the same data folder would silently lose the first one's changes: it
// says so and exits before any window or store exists.
TEST(UiStart, a_second_start_on_a_data_folder_in_use_says_so_and_exits_with_1) {
    quarrydex::test::TempDir dir;
    auto held = quarrydex::DataFolderLock::acquire(dir.path());
    ASSERT_TRUE(held);
    testing::internal::CaptureStderr();
    int status = quarrydex::ui::runWindowedApplication(
        Launcher({"quarrydex", "--data-root", dir.path().string(), "-platform", "offscreen"}));
    std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(status, 1);
    EXPECT_EQ(printed, "Quarrydex is already open with this data folder (" + dir.path().string() +
                           "). Switch to that window, or close it first.\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "quarrydex-data.json"));
}

// Started from the desktop, a second copy says why no main window comes in a window of its
// own, which the keyboard closes.
TEST(UiStart, the_already_open_window_shows_the_message_and_closes_with_escape) {
    static QStringList warnings;
    warnings.clear();
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type != QtDebugMsg && type != QtInfoMsg &&
                !text.startsWith(QStringLiteral("This plugin does not support"))) {
                warnings << text;
            }
        });
    const QString message =
        QString::fromStdString(quarrydex::ui::alreadyOpenMessage("/home/ann/Stones"));
    QQmlEngine engine;
    quarrydex::ui::prepareEngine(engine);
    QQmlComponent component(&engine, quarrydex::ui::alreadyOpenWindowUrl());
    std::unique_ptr<QObject> made(component.createWithInitialProperties({{"message", message}}));
    auto* window = qobject_cast<QQuickWindow*>(made.get());
    ASSERT_TRUE(window) << component.errorString().toStdString();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    EXPECT_EQ(window->title(), QStringLiteral("Orlo Quarrydex"));
    auto* shown = window->findChild<QQuickItem*>(QStringLiteral("problemMessage"));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->property("text").toString(), message);
    EXPECT_TRUE(message.contains(QStringLiteral("/home/ann/Stones")));

    QSignalSpy quit(&engine, &QQmlEngine::quit);
    window->requestActivate();
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window->isVisible(); }));
    EXPECT_EQ(quit.count(), 1);
    qInstallMessageHandler(previous);
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join('\n').toStdString();
}
