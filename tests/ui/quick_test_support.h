#pragma once
// Helpers for the Qt Test suites that drive the windows offscreen: finding items by object
// name, reading their texts, clicking their centres and letting a window settle.

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QTest>

#include <functional>
#include <memory>

#include "ui/windowed_app.h"

namespace quarrydex::test {

// Every warning fails a test, except the offscreen platform's notes that it cannot raise a
// window above the others or pass size limits on to a window manager. Call in initTestCase()
// and init().
inline void failOnAnyWarning() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral(
        "^(?!This plugin does not support (raise\\(\\)|propagateSizeHints\\(\\))$).*")));
}

// The first item in the tree under `root`, itself included, that `match` accepts.
inline QQuickItem* findIf(QQuickItem* root, const std::function<bool(QQuickItem*)>& match) {
    if (!root || match(root)) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = findIf(child, match)) {
            return found;
        }
    }
    return nullptr;
}

inline QQuickItem* findItem(QQuickItem* root, const QString& name) {
    return findIf(root, [&](QQuickItem* item) { return item->objectName() == name; });
}

// The first visible item of that name (hidden views keep their items alive).
inline QQuickItem* findVisible(QQuickItem* root, const QString& name) {
    return findIf(
        root, [&](QQuickItem* item) { return item->objectName() == name && item->isVisible(); });
}

// Every item under `root`, itself included, that `match` accepts, in tree order.
inline QList<QQuickItem*> findAllIf(QQuickItem* root,
                                    const std::function<bool(QQuickItem*)>& match) {
    QList<QQuickItem*> found;
    if (!root) {
        return found;
    }
    if (match(root)) {
        found.append(root);
    }
    for (QQuickItem* child : root->childItems()) {
        found << findAllIf(child, match);
    }
    return found;
}

// Every item of that name under `root`, in tree order.
inline QList<QQuickItem*> findAll(QQuickItem* root, const QString& name) {
    return findAllIf(root, [&](QQuickItem* item) { return item->objectName() == name; });
}

inline QString textOf(QQuickItem* item) {
    return item ? item->property("text").toString() : QString();
}

inline QStringList textsOf(const QList<QQuickItem*>& items) {
    QStringList texts;
    for (QQuickItem* item : items) {
        texts << textOf(item);
    }
    return texts;
}

inline QPoint centreOf(QQuickItem* item) {
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

// Types `text` (plain ASCII) into whatever has the keyboard focus, one key at a time.
inline void typeText(QWindow* window, const QString& text) {
    for (QChar c : text) {
        QTest::keyClick(window, c.toLatin1());
    }
}

// Lets the window lay out and draw once, so that items are where a click will find them.
inline void settle(QQuickWindow* window) {
    QSignalSpy drawn(window, &QQuickWindow::frameSwapped);
    window->update();
    drawn.wait(2000);
}

// For a test process, before its application object exists: the offscreen platform unless
// another is chosen, and the preferences and runtime files inside `home`, so no test reads or
// changes the user's. Software rendering keeps pictures alike on every machine.
inline void prepareQuickTestProcess(const QString& home) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QDir(home).mkpath("config");
    QDir(home).mkpath("runtime");
    QFile::setPermissions(home + "/runtime",
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_CONFIG_HOME", (home + "/config").toUtf8());
    qputenv("XDG_RUNTIME_DIR", (home + "/runtime").toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home + "/config");
    quarrydex::ui::describeApplication();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

// Loads the program's main window into a fresh `engine` and waits until it is shown, and
// active when `activate` is set. Null when it didn't load or show.
inline QQuickWindow* openMainWindow(std::unique_ptr<QQmlApplicationEngine>& engine,
                                    bool activate = true) {
    engine = std::make_unique<QQmlApplicationEngine>();
    quarrydex::ui::prepareEngine(*engine);
    engine->load(quarrydex::ui::mainWindowUrl());
    if (engine->rootObjects().size() != 1) {
        return nullptr;
    }
    auto* window = qobject_cast<QQuickWindow*>(engine->rootObjects().first());
    if (!window || !QTest::qWaitForWindowExposed(window)) {
        return nullptr;
    }
    // The menus and the sections come with the frame after the first.
    if (!QTest::qWaitFor([window] { return window->property("ready").toBool(); })) {
        return nullptr;
    }
    if (activate) {
        window->requestActivate();
        if (!QTest::qWaitForWindowActive(window)) {
            return nullptr;
        }
    }
    return window;
}

} // namespace quarrydex::test
