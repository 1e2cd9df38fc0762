#include "ui/links.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QJSEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace quarrydex::ui {

namespace {

bool openInBrowser(const QUrl& url) {
    return QDesktopServices::openUrl(url);
}

} // namespace

Links::Links(QObject* parent) : QObject(parent), opener_(openInBrowser) {}

Links* Links::instance() {
    static Links* links = new Links;
    return links;
}

Links* Links::create(QQmlEngine*, QJSEngine*) {
    Links* links = instance();
    QJSEngine::setObjectOwnership(links, QJSEngine::CppOwnership);
    return links;
}

QString Links::failureMessage(const QUrl& url) {
    return QStringLiteral("Couldn't open %1 in a web browser. The address is copied to the "
                          "clipboard: paste it into your browser's address bar.")
        .arg(url.toString());
}

void Links::setOpener(Opener opener) {
    opener_ = opener ? std::move(opener) : Opener(openInBrowser);
}

bool Links::open(const QUrl& url, QObject* asker) {
    if (opener_(url)) {
        return true;
    }
    QWindow* window = qobject_cast<QWindow*>(asker);
    if (auto* item = qobject_cast<QQuickItem*>(asker)) {
        window = item->window();
    }
    if (!window) {
        window = QGuiApplication::focusWindow();
    }
    QGuiApplication::clipboard()->setText(url.toString());
    Q_EMIT failed(window, failureMessage(url));
    return false;
}

} // namespace quarrydex::ui
