// The yardstick for start-up: the smallest Qt Quick Controls window, with the same style and
// window size as the program's, reporting its first frame the same way (see bench/startup.sh).

#include "ui/first_frame_report.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>

#include <chrono>

int main(int argc, char** argv) {
    const auto start = std::chrono::steady_clock::now();
    QGuiApplication app(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QQmlApplicationEngine engine;
    engine.loadData(R"(
        import QtQuick
        import QtQuick.Controls
        ApplicationWindow {
            width: 1200; height: 800; visible: true
            title: "Baseline"
            Label { anchors.centerIn: parent; text: "Hello" }
        }
    )");
    if (engine.rootObjects().isEmpty()) {
        return 1;
    }
    quarrydex::ui::reportFirstFrame(qobject_cast<QQuickWindow*>(engine.rootObjects().first()),
                                    start);
    return app.exec();
}
