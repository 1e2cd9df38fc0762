#include "ui/kit/vx_focus_rings.h"

#include <QGuiApplication>
#include <QJSEngine>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTouchEvent>

namespace quarrydex::ui {

namespace {

bool isModifierKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
        return true;
    default:
        return false;
    }
}

bool isVisualReason(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

} // namespace

VxFocusRings::VxFocusRings(QObject* parent) : QObject(parent) {
    // Key and mouse events reach the window first, whichever item they are for.
    qApp->installEventFilter(this);
}

VxFocusRings* VxFocusRings::instance() {
    // Lives for the whole process; QML engines only borrow it.
    static VxFocusRings* rings = new VxFocusRings(nullptr);
    return rings;
}

VxFocusRings* VxFocusRings::create(QQmlEngine*, QJSEngine*) {
    VxFocusRings* rings = instance();
    QJSEngine::setObjectOwnership(rings, QJSEngine::CppOwnership);
    return rings;
}

bool VxFocusRings::isOnPopup(QQuickWindow* window, const QPointF& scenePos) {
    // Popups live in the window's overlay, a child of its root item.
    for (QQuickItem* layer : window->contentItem()->childItems()) {
        if (!layer->inherits("QQuickOverlay")) {
            continue;
        }
        for (QQuickItem* popup : layer->childItems()) {
            if (popup->isVisible() && popup->inherits("QQuickPopupItem") &&
                popup->contains(popup->mapFromScene(scenePos))) {
                return true;
            }
        }
    }
    return false;
}

bool VxFocusRings::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        if (!watched->isWindowType()) {
            break;
        }
        // Shortcut chords (Ctrl+…) are commands, not moves of the focus.
        const auto* key = static_cast<QKeyEvent*>(event);
        if (!isModifierKey(key->key()) &&
            !(key->modifiers() & (Qt::ControlModifier | Qt::MetaModifier))) {
            auto* window = qobject_cast<QQuickWindow*>(watched);
            watch(window);
            setKeyboard(true, window);
        }
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin: {
        auto* window = qobject_cast<QQuickWindow*>(watched);
        watch(window);
        const auto* pointer = static_cast<QPointerEvent*>(event);
        if (window && !pointer->points().isEmpty() &&
            !isOnPopup(window, pointer->points().first().scenePosition())) {
            setKeyboard(false, window);
        }
        break;
    }
    case QEvent::FocusIn:
        // Seen before the item takes it; the window says when the focus has settled.
        if (auto* item = qobject_cast<QQuickItem*>(watched)) {
            watch(item->window());
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void VxFocusRings::watch(QQuickWindow* window) {
    if (window) {
        connect(window, &QQuickWindow::activeFocusItemChanged, this, &VxFocusRings::focusMoved,
                Qt::UniqueConnection);
    }
}

void VxFocusRings::setKeyboard(bool keyboard, QQuickWindow* window) {
    if (keyboard_ == keyboard) {
        return;
    }
    keyboard_ = keyboard;
    if (window) {
        tellControl(window->activeFocusItem(), keyboard_);
    }
    Q_EMIT keyboardChanged();
}

void VxFocusRings::focusMoved() {
    if (auto* window = qobject_cast<QQuickWindow*>(sender())) {
        tellControl(window->activeFocusItem(), keyboard_);
    }
}

void VxFocusRings::tellControl(QQuickItem* item, bool keyboard) {
    // Controls, and only they, know how their focus came.
    const QVariant reason = item ? item->property("focusReason") : QVariant();
    if (!reason.isValid()) {
        return;
    }
    if (isVisualReason(reason.value<Qt::FocusReason>()) != keyboard) {
        item->setProperty("focusReason", QVariant::fromValue(keyboard ? Qt::TabFocusReason
                                                                      : Qt::MouseFocusReason));
    }
}

} // namespace quarrydex::ui
