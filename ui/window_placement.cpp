#include "ui/window_placement.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace quarrydex::ui {

namespace {

// A first window leaves a little of its screen free around it.
constexpr double defaultShare = 0.9;

QList<QRect> availableGeometries() {
    QList<QRect> geometries;
    if (QScreen* primary = QGuiApplication::primaryScreen()) {
        geometries.append(primary->availableGeometry());
    }
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen != QGuiApplication::primaryScreen()) {
            geometries.append(screen->availableGeometry());
        }
    }
    return geometries;
}

} // namespace

WindowPlacement::WindowPlacement(QObject* parent) : QObject(parent) {
    QSettings settings;
    bool ok = false;
    const double width = settings.value(QLatin1String(sidebarWidthKey)).toDouble(&ok);
    if (ok && std::isfinite(width) && width > 0) {
        savedSidebarWidth_ = width;
    }
    if (QScreen* primary = QGuiApplication::primaryScreen()) {
        screenSize_ = primary->availableSize();
    }
    connect(qApp, &QCoreApplication::aboutToQuit, this, &WindowPlacement::save);
}

QRect WindowPlacement::fit(const QRect& saved, QSize defaultSize, const QList<QRect>& screens) {
    if (screens.isEmpty()) {
        return {QPoint(0, 0), defaultSize};
    }
    // The screen that shows most of the saved window.
    const QRect* screen = nullptr;
    qint64 shown = 0;
    for (const QRect& candidate : screens) {
        const QRect common = saved.isValid() ? candidate.intersected(saved) : QRect();
        const qint64 area = qint64(common.width()) * common.height();
        if (area > shown) {
            shown = area;
            screen = &candidate;
        }
    }
    if (!screen) {
        const QRect& primary = screens.front();
        QRect centred({}, saved.isValid() ? saved.size().boundedTo(primary.size())
                                          : defaultSize.boundedTo(primary.size() * defaultShare));
        centred.moveCenter(primary.center());
        return centred;
    }
    QRect placed(saved.topLeft(), saved.size().boundedTo(screen->size()));
    placed.moveLeft(
        std::clamp(placed.left(), screen->left(), screen->right() + 1 - placed.width()));
    placed.moveTop(std::clamp(placed.top(), screen->top(), screen->bottom() + 1 - placed.height()));
    return placed;
}

void WindowPlacement::setWindow(QWindow* window) {
    if (window_ == window) {
        return;
    }
    if (window_) {
        disconnect(window_, nullptr, this, nullptr);
    }
    window_ = window;
    isPlaced_ = false;
    if (complete_) {
        place();
    }
}

qreal WindowPlacement::sidebarWidth() const {
    return savedSidebarWidth_ > 0 ? savedSidebarWidth_ : defaultSidebarWidth_;
}

void WindowPlacement::componentComplete() {
    complete_ = true;
    place();
}

void WindowPlacement::place() {
    if (!window_ || isPlaced_) {
        return;
    }
    isPlaced_ = true;
    QSettings settings;
    const QRect saved = settings.value(QLatin1String(geometryKey)).toRect();
    normalGeometry_ = fit(saved, defaultSize_, availableGeometries());
    if (QScreen* screen = QGuiApplication::screenAt(normalGeometry_.center())) {
        screenSize_ = screen->availableSize();
        window_->setScreen(screen);
    }
    window_->setGeometry(normalGeometry_);
    // A Qt Quick window applies its visibility only once it is complete, and then replaces
    // a window state set directly: ask for the maximised visibility instead.
    if (saved.isValid() && settings.value(QLatin1String(maximizedKey)).toBool()) {
        window_->setProperty("visibility", QWindow::Maximized);
    }

    connect(window_, &QWindow::xChanged, this, &WindowPlacement::remember);
    connect(window_, &QWindow::yChanged, this, &WindowPlacement::remember);
    connect(window_, &QWindow::widthChanged, this, &WindowPlacement::remember);
    connect(window_, &QWindow::heightChanged, this, &WindowPlacement::remember);
    // Closing hides the window.
    connect(window_, &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible) {
            save();
        }
    });
    Q_EMIT placed();
}

// The geometry to restore is the one of the plain window, not of the maximised, minimised or
// full-screen one.
void WindowPlacement::remember() {
    if (window_ && window_->windowStates() == Qt::WindowNoState) {
        normalGeometry_ = window_->geometry();
    }
}

void WindowPlacement::save() const {
    if (!window_ || !isPlaced_) {
        return;
    }
    QSettings settings;
    settings.setValue(QLatin1String(geometryKey), normalGeometry_);
    settings.setValue(QLatin1String(maximizedKey),
                      window_->windowStates().testFlag(Qt::WindowMaximized));
    if (sidebar_ && sidebar_->width() > 0) {
        settings.setValue(QLatin1String(sidebarWidthKey), sidebar_->width());
    }
}

} // namespace quarrydex::ui
