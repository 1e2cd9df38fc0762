#pragma once
// Tells when a window's first frame has gone to be drawn. What that frame does not need is
// made then, on the GUI thread, while the frame is drawn on the render thread: the window
// appears as soon as a bare one would, and is complete a moment later.

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class FirstFrame : public QObject {
    Q_OBJECT
    QML_ELEMENT

    // The window watched. Set once, before it is shown.
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged)
    // True from the moment the first frame has been handed to the renderer (or, should the
    // window never be drawn, after `fallbackDelay`); never false again.
    Q_PROPERTY(bool passed READ passed NOTIFY passedChanged)

public:
    // A window that is never drawn (hidden, or on a platform that draws nothing) still gets
    // its content after this long.
    static constexpr int fallbackDelay = 1000;

    explicit FirstFrame(QObject* parent = nullptr);

    QQuickWindow* window() const { return window_; }
    void setWindow(QQuickWindow* window);
    bool passed() const { return passed_; }

Q_SIGNALS:
    void windowChanged();
    void passedChanged();

private:
    void pass();

    QPointer<QQuickWindow> window_;
    bool passed_ = false;
};

} // namespace quarrydex::ui
