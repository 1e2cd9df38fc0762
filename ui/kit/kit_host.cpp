#include "ui/kit/kit_host.h"

#include <QCoreApplication>
#include <QHoverEvent>
#include <QJSEngine>
#include <QKeySequence>
#include <QQuickItem>

namespace quarrydex::ui {

OrloKitHost::OrloKitHost(QObject* parent) : QObject(parent) {}

OrloKitHost* OrloKitHost::instance() {
    // Lives for the whole process; QML engines only borrow it.
    static OrloKitHost* host = new OrloKitHost(nullptr);
    return host;
}

OrloKitHost* OrloKitHost::create(QQmlEngine*, QJSEngine*) {
    OrloKitHost* host = instance();
    QJSEngine::setObjectOwnership(host, QJSEngine::CppOwnership);
    return host;
}

void OrloKitHost::setThemeProvider(ThemeProvider provider) {
    provider_ = std::move(provider);
    Q_EMIT themeChanged();
}

void OrloKitHost::setHelpHook(HelpHook hook) {
    helpHook_ = std::move(hook);
}

VxKitTheme OrloKitHost::theme() const {
    if (provider_) {
        return provider_();
    }
    return VxKitTheme{QColor(0x1c, 0x1c, 0x1e), QColor(0xf2, 0xf2, 0xf2), QColor(0xa0, 0xa0, 0xa0),
                      QColor(0x3a, 0x3a, 0x3c), QColor(0x8a, 0xb4, 0xf8), QColor(0x2c, 0x2c, 0x2e),
                      QColor(0x24, 0x24, 0x26)};
}

void OrloKitHost::showHelp(const QString& topic) const {
    if (helpHook_) {
        helpHook_(topic);
    }
}

QString OrloKitHost::shortcutText(const QVariant& shortcut) {
    if (!shortcut.isValid() || shortcut.isNull()) {
        return {};
    }
    QKeySequence sequence;
    if (shortcut.typeId() == QMetaType::QString) {
        sequence = QKeySequence(shortcut.toString());
    } else if (shortcut.canConvert<int>()) {
        sequence = QKeySequence(static_cast<QKeySequence::StandardKey>(shortcut.toInt()));
    } else {
        sequence = shortcut.value<QKeySequence>();
    }
    return sequence.toString(QKeySequence::NativeText);
}

QString OrloKitHost::mnemonicMarkup(const QString& text) {
    QString markup;
    bool underlined = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        QString letter = text.at(i);
        if (letter == QLatin1String("&") && i + 1 < text.size()) {
            letter = text.at(++i);
            if (letter != QLatin1String("&") && !underlined) {
                underlined = true;
                markup += QLatin1String("<u>") + letter.toHtmlEscaped() + QLatin1String("</u>");
                continue;
            }
        } else if (letter == QLatin1String("&")) {
            continue; // a lone "&" at the end marks nothing
        }
        markup += letter.toHtmlEscaped();
    }
    return markup;
}

void OrloKitHost::endHover(QQuickItem* item) {
    if (!item) {
        return;
    }
    const QPointF outside(-1, -1);
    QHoverEvent leave(QEvent::HoverLeave, outside, outside, outside);
    QCoreApplication::sendEvent(item, &leave);
}

} // namespace quarrydex::ui
