#include "ui/kit/vx_menu_bar_keys.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace quarrydex::ui {

VxMenuBarKeys::VxMenuBarKeys(QObject* parent) : QObject(parent) {}

void VxMenuBarKeys::setWindow(QQuickWindow* window) {
    if (window_ == window) {
        return;
    }
    // The whole application is watched: a letter that completes a shortcut (Alt+F) never
    // reaches the window as a key press, only its shortcut-override query reaches the focus item.
    if (!window_ && window) {
        qApp->installEventFilter(this);
    } else if (window_ && !window) {
        qApp->removeEventFilter(this);
    }
    window_ = window;
    altAlone_ = false;
    Q_EMIT windowChanged();
}

bool VxMenuBarKeys::eventFilter(QObject* watched, QEvent* event) {
    if (!window_ || QGuiApplication::focusWindow() != window_) {
        altAlone_ = false;
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->isAutoRepeat()) {
            break;
        }
        const Qt::KeyboardModifiers others =
            key->modifiers() & ~(Qt::AltModifier | Qt::KeypadModifier);
        const bool altAlone = key->key() == Qt::Key_Alt && others == Qt::NoModifier;
        if (altAlone && !altAlone_) {
            altAlone_ = true;
            Q_EMIT altPressed();
        }
        altAlone_ = altAlone;
        if (event->type() == QEvent::KeyPress && watched == window_ && key->key() == Qt::Key_F10 &&
            key->modifiers() == Qt::NoModifier) {
            Q_EMIT f10Pressed();
            return true;
        }
        break;
    }
    case QEvent::KeyRelease: {
        // Each key event reaches the window first, then the items it is delivered to.
        if (watched != window_) {
            break;
        }
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Alt && !key->isAutoRepeat() && altAlone_) {
            altAlone_ = false;
            Q_EMIT altTapped();
        }
        break;
    }
    // Alt held for a click or a scroll, is not a tap.
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::Shortcut:
        altAlone_ = false;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quarrydex::ui
