#pragma once
// Web addresses opened from the window (QML: `Links`). When no browser takes an address, the
// window that asked says so and the address goes to the clipboard, instead of a note on the
// terminal alone.

#include <QObject>
#include <QString>
#include <QUrl>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

#include <functional>

class QQmlEngine;
class QJSEngine;

namespace quarrydex::ui {

class Links : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using Opener = std::function<bool(const QUrl&)>;

    static Links* instance();
    static Links* create(QQmlEngine*, QJSEngine*);

    // Opens `url` in the default web browser. When that fails, copies the address to the
    // clipboard and emits failed() for the window of `asker` (an item or a window; without one,
    // the window that has the focus). Returns whether the browser took it.
    Q_INVOKABLE bool open(const QUrl& url, QObject* asker = nullptr);

    // The sentence the window shows when `url` couldn't be opened.
    static QString failureMessage(const QUrl& url);

    // How addresses are handed to the browser: QDesktopServices::openUrl, unless replaced (tests
    // replace it to fail the way a computer without a browser does); none restores it.
    void setOpener(Opener opener);

Q_SIGNALS:
    void failed(QWindow* window, const QString& message);

private:
    explicit Links(QObject* parent = nullptr);

    Opener opener_;
};

} // namespace quarrydex::ui
