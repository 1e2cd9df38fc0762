#include "ui/first_frame_report.h"

#include <QQuickWindow>
#include <QtGlobal>

#include <cstdio>
#include <memory>

namespace quarrydex::ui {

namespace {

using Clock = std::chrono::steady_clock;

// Prints `what` with the time since `start` at the window's next frame. Runs on the render
// thread where there is one: it touches nothing but its own copies.
void reportNextFrame(QQuickWindow* window, Clock::time_point start, const char* what) {
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [start, what] {
            const auto elapsed =
                std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
            std::fprintf(stderr, "%s after %.1f ms\n", what,
                         static_cast<double>(elapsed.count()) / 1000.0);
            std::fflush(stderr);
        },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
}

} // namespace

void reportFirstFrame(QQuickWindow* window, Clock::time_point start) {
    if (!window || !qEnvironmentVariableIsSet("QUARRYDEX_STARTUP_REPORT")) {
        return;
    }
    reportNextFrame(window, start, "first frame");

    const int index = window->metaObject()->indexOfProperty("ready");
    if (index < 0) {
        return;
    }
    const QMetaProperty ready = window->metaObject()->property(index);
    auto isReady = [window, ready] { return ready.read(window).toBool(); };
    if (isReady()) {
        return;
    }
    // Checked on the GUI thread as each frame is prepared; the first frame with it is reported.
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(
        window, &QQuickWindow::afterAnimating, window,
        [window, start, isReady, connection] {
            if (isReady()) {
                QObject::disconnect(*connection);
                reportNextFrame(window, start, "ready");
            }
        },
        Qt::DirectConnection);
}

} // namespace quarrydex::ui
