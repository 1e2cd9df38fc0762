#pragma once
// Every symbol name the program uses, mapped in this one place to a glyph of the Material
// Design Icons font that Debian installs (fonts-materialdesignicons-webfont). Core records
// name their icons with platform-neutral symbol names ("cube", "star.fill"); the screens
// ask `Icons.glyph(name)` and draw the text in `Icons.family`.

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <span>
#include <string_view>

class QQmlEngine;
class QJSEngine;

namespace quarrydex::ui {

struct IconGlyph {
    std::string_view symbol;   // the program's name for the icon
    std::string_view fontName; // the icon's name in the font (for readers of the table)
    char16_t codePoint;
};

class Icons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString family READ family CONSTANT)

public:
    static constexpr const char* fontFile =
        "/usr/share/fonts/truetype/materialdesignicons-webfont/materialdesignicons-webfont.ttf";

    explicit Icons(QObject* parent = nullptr);
    static Icons* create(QQmlEngine*, QJSEngine*);

    // Registers the icon font with the application, once; the QML singleton does it when it is
    // made. False (with a warning) when the font file is missing.
    static bool loadFont();
    static QString family();

    static std::span<const IconGlyph> table();
    static const IconGlyph* find(std::string_view symbol);

    // The glyph for `symbol` as a one-character string; an unknown name warns and draws a
    // question mark in a circle rather than an empty box.
    Q_INVOKABLE static QString glyph(const QString& symbol);
    Q_INVOKABLE static bool has(const QString& symbol);
};

} // namespace quarrydex::ui
