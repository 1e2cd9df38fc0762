#pragma once
// Helpers for the Qt Test suites that drive the windows offscreen: finding items by object
// name, reading their texts, clicking their centres and letting a window settle.

#include <QPoint>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTest>

#include <functional>

namespace quarrydex::test {

// Every warning fails a test, except the offscreen platform's note that it cannot raise a
// window above the others. Call in initTestCase() and init().
inline void failOnAnyWarning() {
    QTest::failOnWarning(
        QRegularExpression(QStringLiteral("^(?!This plugin does not support raise\\(\\)$).*")));
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

// Every item of that name under `root`, in tree order.
inline QList<QQuickItem*> findAll(QQuickItem* root, const QString& name) {
    QList<QQuickItem*> found;
    std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
        if (item->objectName() == name) {
            found.append(item);
        }
        for (QQuickItem* child : item->childItems()) {
            walk(child);
        }
    };
    if (root) {
        walk(root);
    }
    return found;
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

} // namespace quarrydex::test
