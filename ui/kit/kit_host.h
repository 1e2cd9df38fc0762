#pragma once
// The window-chrome kit's host: the two functions the program installs at start, the
// theme provider and the help hook. The kit knows nothing of stones; it draws with the
// colours the provider returns and opens help through the hook.

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>

class QQmlEngine;
class QJSEngine;
class QQuickItem;

namespace quarrydex::ui {

// The colours the kit draws with.
struct VxKitTheme {
    Q_GADGET
    QML_VALUE_TYPE(vxKitTheme)
    Q_PROPERTY(QColor bg MEMBER bg)
    Q_PROPERTY(QColor text MEMBER text)
    Q_PROPERTY(QColor dim MEMBER dim)
    Q_PROPERTY(QColor rim MEMBER rim)
    Q_PROPERTY(QColor accent MEMBER accent)
    Q_PROPERTY(QColor panelTop MEMBER panelTop)
    Q_PROPERTY(QColor panelBottom MEMBER panelBottom)

public:
    QColor bg;
    QColor text;
    QColor dim;
    QColor rim;
    QColor accent;
    QColor panelTop;
    QColor panelBottom;

    bool operator==(const VxKitTheme&) const = default;
};

// One per process. QML reads `OrloKitHost.theme`; the binding re-reads the provider
// whenever the program signals a theme change through themeChanged().
class OrloKitHost : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(quarrydex::ui::VxKitTheme theme READ theme NOTIFY themeChanged)

public:
    using ThemeProvider = std::function<VxKitTheme()>;
    using HelpHook = std::function<void(const QString& topic)>;

    // No default argument: the QML engine must take the shared instance from create().
    explicit OrloKitHost(QObject* parent);

    static OrloKitHost* instance();
    static OrloKitHost* create(QQmlEngine*, QJSEngine*);

    // Until a provider is installed the kit draws in neutral greys.
    void setThemeProvider(ThemeProvider provider);
    void setHelpHook(HelpHook hook);

    VxKitTheme theme() const;
    // Opens help on `topic` through the installed hook; without one it does nothing.
    Q_INVOKABLE void showHelp(const QString& topic) const;
    // A shortcut as menus show it ("Ctrl+Shift+V"): `shortcut` is a key sequence text or a
    // QKeySequence::StandardKey, as an Action holds it. Empty for none.
    Q_INVOKABLE static QString shortcutText(const QVariant& shortcut);
    // A menu text as styled text with its mnemonic letter underlined: "&File" gives
    // "<u>F</u>ile", "&&" a plain "&". Everything else is escaped, so it shows as written.
    Q_INVOKABLE static QString mnemonicMarkup(const QString& text);
    // Tells `item` that the pointer has left it, as if it had moved away; the next move over it
    // hovers it again.
    Q_INVOKABLE static void endHover(QQuickItem* item);

Q_SIGNALS:
    void themeChanged();

private:
    ThemeProvider provider_;
    HelpHook helpHook_;
};

} // namespace quarrydex::ui
