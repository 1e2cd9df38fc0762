#include "ui/first_frame_report.h"

#include <QQuickWindow>
#include <QtGlobal>

#include <cstdio>
#include <memory>

namespace quarrydex::ui {

void reportFirstFrame(QQuickWindow* window, std::chrono::steady_clock::time_point start) {
    if (!window || !qEnvironmentVariableIsSet("QUARRYDEX_STARTUP_REPORT")) {
        return;
    }
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(
        window, &QQuickWindow::frameSwapped, window,
        [start, connection] {
            QObject::disconnect(*connection);
            const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now() - start);
            std::fprintf(stderr, "first frame after %.1f ms\n",
                         static_cast<double>(elapsed.count()) / 1000.0);
            std::fflush(stderr);
        },
        Qt::DirectConnection);
}

} // namespace quarrydex::ui
