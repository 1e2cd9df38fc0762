#include "ui/icons.h"

#include <QFontDatabase>
#include <QtDebug>

#include <algorithm>
#include <array>

namespace quarrydex::ui {

namespace {

// Code points from the font package's stylesheet
// (/usr/share/fonts-materialdesignicons-webfont/css/materialdesignicons.css).
constexpr std::array<IconGlyph, 52> glyphs{{
    // sidebar sections
    {"camera.viewfinder", "camera-iris", 0xF104},
    {"books.vertical", "library-books", 0xF332},
    {"star", "star-outline", 0xF4D2},
    {"star.fill", "star", 0xF4CE},
    {"square.grid.2x2", "view-grid", 0xF570},
    {"clock.arrow.circlepath", "history", 0xF2DA},
    {"externaldrive", "harddisk", 0xF2CA},
    {"questionmark.circle", "help-circle-outline", 0xF625},
    // library categories
    {"cube", "cube", 0xF1A6},
    {"diamond", "diamond", 0xF1C8},
    {"mountain.2", "terrain", 0xF509},
    {"leaf", "leaf", 0xF32A},
    {"sparkles", "auto-fix", 0xF068},
    // guided questions
    {"paintpalette", "palette", 0xF3D8},
    {"sun.max", "white-balance-sunny", 0xF5A8},
    {"cube.transparent", "cube-outline", 0xF1A7},
    {"hand.point.up.left", "hand-pointing-right", 0xF2C7},
    {"scribble", "grease-pencil", 0xF648},
    {"scalemass", "weight", 0xF5A1},
    {"bolt.horizontal", "magnet", 0xF347},
    {"drop", "water", 0xF58C},
    // help chapters
    {"hand.wave", "human-greeting", 0xF64A},
    {"viewfinder", "crosshairs", 0xF1A3},
    {"testtube.2", "test-tube", 0xF668},
    {"exclamationmark.shield", "shield-outline", 0xF499},
    {"info.circle", "information-outline", 0xF2FD},
    {"photo.stack", "image-multiple", 0xF2F9},
    // notices, commands and controls
    {"exclamationmark.triangle", "alert-outline", 0xF02A},
    {"photo", "image", 0xF2E9},
    {"photo.on.rectangle", "folder-image", 0xF24F},
    {"camera", "camera", 0xF100},
    {"camera.circle.fill", "camera-enhance", 0xF101},
    {"doc.on.clipboard", "content-paste", 0xF192},
    {"plus", "plus", 0xF415},
    {"minus", "minus", 0xF374},
    {"plus.magnifyingglass", "magnify-plus", 0xF34B},
    {"minus.magnifyingglass", "magnify-minus", 0xF34A},
    {"magnifyingglass", "magnify", 0xF349},
    {"checkmark", "check", 0xF12C},
    {"xmark", "close", 0xF156},
    {"trash", "delete", 0xF1C0},
    {"pencil", "pencil", 0xF3EB},
    {"safari", "web", 0xF59F},
    {"arrow.up.right.square", "open-in-new", 0xF3CC},
    {"arrow.counterclockwise", "backup-restore", 0xF06F},
    {"square.and.arrow.up", "export", 0xF207},
    {"square.and.arrow.down", "download", 0xF1DA},
    {"chevron.right", "chevron-right", 0xF142},
    {"chevron.left", "chevron-left", 0xF141},
    {"wifi.slash", "wifi-off", 0xF5AA},
    {"lightbulb", "lightbulb-outline", 0xF336},
    {"info.bubble", "information-variant", 0xF64E},
}};

constexpr char16_t fallbackGlyph = 0xF625; // help-circle-outline

} // namespace

Icons::Icons(QObject* parent) : QObject(parent) {}

Icons* Icons::create(QQmlEngine*, QJSEngine*) {
    // The font is added when the windows first ask for a symbol, not before the first frame.
    loadFont();
    return new Icons;
}

bool Icons::loadFont() {
    static const bool loaded = [] {
        int id = QFontDatabase::addApplicationFont(QString::fromUtf8(fontFile));
        if (id < 0) {
            qWarning("The icon font %s could not be loaded; install "
                     "fonts-materialdesignicons-webfont.",
                     fontFile);
            return false;
        }
        return true;
    }();
    return loaded;
}

QString Icons::family() {
    return QStringLiteral("Material Design Icons");
}

std::span<const IconGlyph> Icons::table() {
    return glyphs;
}

const IconGlyph* Icons::find(std::string_view symbol) {
    auto it = std::find_if(glyphs.begin(), glyphs.end(),
                           [&](const IconGlyph& g) { return g.symbol == symbol; });
    return it == glyphs.end() ? nullptr : &*it;
}

QString Icons::glyph(const QString& symbol) {
    const IconGlyph* found = find(symbol.toStdString());
    if (!found) {
        qWarning() << "No icon for the symbol" << symbol;
        return QString(QChar(fallbackGlyph));
    }
    return QString(QChar(found->codePoint));
}

bool Icons::has(const QString& symbol) {
    return find(symbol.toStdString()) != nullptr;
}

} // namespace quarrydex::ui
