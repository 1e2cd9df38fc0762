#include "ui/screenshotter.h"

#include "app/app_model.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

using quarrydex::AppModel;
using quarrydex::SpecimenLibrary;
using quarrydex::test::TempDir;
using quarrydex::ui::Screenshotter;

namespace {

std::unique_ptr<QQuickWindow> colouredWindow(const QColor& colour, bool visible) {
    auto window = std::make_unique<QQuickWindow>();
    window->setColor(colour);
    window->resize(120, 80);
    if (visible) {
        window->show();
        QSignalSpy drawn(window.get(), &QQuickWindow::frameSwapped);
        drawn.wait(2000);
    }
    return window;
}

} // namespace

// The first visible window gives "<name>.png", later ones "<name>-window<k>.png"; hidden
// windows give nothing, an old picture is replaced, and a folder that cannot exist gives no
// picture and no failure.
TEST(UiScreenshotter, every_visible_window_is_pictured_once_in_window_order) {
    TempDir temp;
    AppModel model(std::make_shared<const SpecimenLibrary>(quarrydex::test::numberedSpecimens(2)),
                   temp / "data");
    auto first = colouredWindow(Qt::darkGreen, true);
    auto hidden = colouredWindow(Qt::red, false);
    auto second = colouredWindow(Qt::darkBlue, true);
    std::filesystem::create_directories(temp / "shots");
    quarrydex::test::writeFile(temp / "shots" / "stop.png", "an old picture");

    Screenshotter tour(QString::fromStdString((temp / "shots").string()), model);
    const QStringList written = tour.capture(QStringLiteral("stop"));

    ASSERT_EQ(written.size(), 2);
    EXPECT_EQ(quarrydex::test::namesIn(temp / "shots"),
              (std::set<std::string>{"stop.png", "stop-window1.png"}));
    const QImage one(QString::fromStdString((temp / "shots" / "stop.png").string()));
    const QImage two(QString::fromStdString((temp / "shots" / "stop-window1.png").string()));
    EXPECT_EQ(one.pixelColor(10, 10), QColor(Qt::darkGreen));
    EXPECT_EQ(two.pixelColor(10, 10), QColor(Qt::darkBlue));

    quarrydex::test::writeFile(temp / "file", "");
    Screenshotter nowhere(QString::fromStdString((temp / "file" / "shots").string()), model);
    EXPECT_TRUE(nowhere.capture(QStringLiteral("stop")).isEmpty());
}

// Plain flickables, scroll views and list views nested anywhere end at their bottom edge;
// one whose content fits stays where it is.
TEST(UiScreenshotter, scrolling_to_the_end_reaches_the_bottom_of_every_scroll_area) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(R"(
        import QtQuick
        import QtQuick.Controls
        Item {
            width: 200; height: 300
            Flickable { objectName: "plain"; width: 200; height: 100; contentHeight: 1000 }
            Column {
                y: 100
                ListView {
                    objectName: "list"; width: 200; height: 100; model: 100
                    delegate: Rectangle { width: 200; height: 20 }
                }
                Flickable { objectName: "short"; width: 200; height: 100; contentHeight: 50 }
            }
            ScrollView {
                objectName: "scrollView"; y: 200; width: 200; height: 100
                Rectangle { implicitWidth: 200; implicitHeight: 500 }
            }
        })",
                      QUrl());
    std::unique_ptr<QObject> root(component.create());
    ASSERT_TRUE(root) << component.errorString().toStdString();
    auto* item = qobject_cast<QQuickItem*>(root.get());

    Screenshotter::scrollToEnd(item);

    EXPECT_DOUBLE_EQ(item->findChild<QObject*>("plain")->property("contentY").toDouble(), 900);
    EXPECT_TRUE(item->findChild<QObject*>("list")->property("atYEnd").toBool());
    EXPECT_DOUBLE_EQ(item->findChild<QObject*>("short")->property("contentY").toDouble(), 0);
    auto* scrolled =
        item->findChild<QObject*>("scrollView")->property("contentItem").value<QObject*>();
    EXPECT_DOUBLE_EQ(scrolled->property("contentY").toDouble(), 400);
}
