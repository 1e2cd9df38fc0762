#pragma once
// Where the main window opens, and what it remembers of itself between runs: its size and
// position, whether it was maximised, and the width of its sidebar, all in the preferences.

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QRect>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class WindowPlacement : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)

    // The window placed. Set it in QML: it is placed once, before it is first shown.
    Q_PROPERTY(QWindow* window READ window WRITE setWindow NOTIFY placed)
    // The sidebar whose width is remembered.
    Q_PROPERTY(QQuickItem* sidebar MEMBER sidebar_)
    // The size on a first start; smaller where the screen is.
    Q_PROPERTY(QSize defaultSize MEMBER defaultSize_)
    Q_PROPERTY(qreal defaultSidebarWidth MEMBER defaultSidebarWidth_ NOTIFY placed)
    // The sidebar's width from the last run, else the default.
    Q_PROPERTY(qreal sidebarWidth READ sidebarWidth NOTIFY placed)
    // What the screen the window opened on offers: the window's minimum size must fit in it.
    Q_PROPERTY(QSize screenSize READ screenSize NOTIFY placed)

public:
    static constexpr const char* geometryKey = "window/geometry";
    static constexpr const char* maximizedKey = "window/maximized";
    static constexpr const char* sidebarWidthKey = "window/sidebarWidth";

    explicit WindowPlacement(QObject* parent = nullptr);

    // Where a window opens, given where it was (`saved`, invalid when nothing is remembered)
    // and the available geometries of the attached screens, the primary one first. A window
    // that no longer overlaps any screen opens centred on the primary, and so does a first
    // one, at its default size; none opens larger than its screen or partly off it.
    static QRect fit(const QRect& saved, QSize defaultSize, const QList<QRect>& screens);

    QWindow* window() const { return window_; }
    void setWindow(QWindow* window);
    qreal sidebarWidth() const;
    QSize screenSize() const { return screenSize_; }

    // Stores the window's size and position (as it was before it was maximised), whether it
    // is maximised, and the sidebar's width. Done when the window closes and when the
    // program quits.
    Q_INVOKABLE void save() const;

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void placed();

private:
    void place();
    void remember();

    QPointer<QWindow> window_;
    QPointer<QQuickItem> sidebar_;
    QSize defaultSize_{1200, 800};
    qreal defaultSidebarWidth_ = 220;
    qreal savedSidebarWidth_ = 0;
    QRect normalGeometry_;
    QSize screenSize_;
    bool complete_ = false;
    bool isPlaced_ = false;
};

} // namespace quarrydex::ui
