#pragma once
// The two desktop keys that reach a window's menus without a letter: Alt pressed and released
// on its own, and F10. Qt Quick's MenuBar answers only Alt with a title's letter, so this watches
// the window's key events and says when either key asks for the menus; the menu bar decides what
// to open or close.

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class VxMenuBarKeys : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged)

public:
    explicit VxMenuBarKeys(QObject* parent = nullptr);

    QQuickWindow* window() const { return window_; }
    void setWindow(QQuickWindow* window);

Q_SIGNALS:
    void windowChanged();
    // Alt went down on its own; said before the focused item sees the key, which may be an
    // open menu that closes on it.
    void altPressed();
    // Alt went down and up with nothing else in between.
    void altTapped();
    void f10Pressed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QQuickWindow> window_;
    // Alt is down and nothing else has happened since.
    bool altAlone_ = false;
};

} // namespace quarrydex::ui
