#include "ui/first_frame.h"

#include <QTimer>

namespace quarrydex::ui {

FirstFrame::FirstFrame(QObject* parent) : QObject(parent) {}

void FirstFrame::setWindow(QQuickWindow* window) {
    if (window_ == window) {
        return;
    }
    if (window_) {
        disconnect(window_, nullptr, this, nullptr);
    }
    window_ = window;
    Q_EMIT windowChanged();
    if (!window_ || passed_) {
        return;
    }
    // afterSynchronizing comes from the render thread when there is one; queued, pass() runs
    // on this object's thread once the scene has been handed over, while it is drawn.
    connect(window_, &QQuickWindow::afterSynchronizing, this, &FirstFrame::pass,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    QTimer::singleShot(fallbackDelay, this, &FirstFrame::pass);
}

void FirstFrame::pass() {
    if (passed_) {
        return;
    }
    passed_ = true;
    if (window_) {
        disconnect(window_, nullptr, this, nullptr);
    }
    Q_EMIT passedChanged();
}

} // namespace quarrydex::ui
