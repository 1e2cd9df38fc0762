#pragma once
// Whether focus rings are shown. A ring marks the item that has the keyboard focus only while
// the keyboard is in use: a key press turns the rings on, a press of the mouse (or a touch) on
// the window turns them off. A press inside an open popup (a menu, a list, a dialog) leaves them
// as they were, so the item that had its ring before the popup opened has it again the moment
// the popup closes, however it was closed.
//
// Qt Quick's own `visualFocus` can't serve: it is true only when the focus came by Tab or a
// shortcut, and a popup that closes hands the focus back for another reason. So controls are
// kept in line too: one that gets the focus while the rings are on is told it came by Tab, and
// the focused one is told it came by the mouse when the rings go off; styles that draw from
// `visualFocus` then agree with the rings drawn here.

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;
class QQuickItem;
class QQuickWindow;

namespace quarrydex::ui {

class VxFocusRings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool keyboard READ keyboard NOTIFY keyboardChanged)

public:
    explicit VxFocusRings(QObject* parent);

    static VxFocusRings* instance();
    static VxFocusRings* create(QQmlEngine*, QJSEngine*);

    // The keyboard is in use: the item with the active focus shows its ring.
    bool keyboard() const { return keyboard_; }

    // Whether a press at `scenePos` lands on an open popup of `window`.
    static bool isOnPopup(QQuickWindow* window, const QPointF& scenePos);

Q_SIGNALS:
    void keyboardChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QQuickWindow* window);
    void setKeyboard(bool keyboard, QQuickWindow* window);
    void focusMoved();
    static void tellControl(QQuickItem* item, bool keyboard);

    bool keyboard_ = false;
};

} // namespace quarrydex::ui
