#include "ui/theme.h"

#include "identify/rgb.h"

#include <QJSEngine>
#include <QSettings>
#include <QVariantMap>

namespace quarrydex::ui {

namespace {

constexpr std::array<StonePalette, 6> palettes{{
    {"malachite", "Malachite", "green", "#111315", "#1B1E21", "#24282C", "#2E3337", "#F2F1EC",
     "#A7ABAF", "#4CC79A", "#0B1A14", "#173A2D", "#8BE3C0"},
    {"cobalt", "Cobalt", "blue", "#0A1018", "#142133", "#1C2D44", "#2A3F5C", "#EEF5FD", "#9DB2CA",
     "#4FA8FF", "#04101E", "#12304F", "#9FD0FF"},
    {"rosequartz", "Rose Quartz", "rose", "#160C10", "#2A1820", "#36202A", "#4C2E3A", "#FFF1F4",
     "#D2A7B4", "#F59BB5", "#2A0A15", "#4A2030", "#FFC4D5"},
    {"amethyst", "Amethyst", "violet", "#0F0B18", "#1E1730", "#29203F", "#3B2F58", "#F6F1FF",
     "#B3A6CF", "#B38CFF", "#160A2A", "#2E2150", "#D8C6FF"},
    {"obsidian", "Obsidian", "black", "#050505", "#121212", "#1A1A1B", "#2A2A2C", "#F4F4F5",
     "#A1A1A6", "#E6E8EC", "#0A0A0A", "#232325", "#D7D9DE"},
    {"hematite", "Hematite", "gray", "#2B2E33", "#3B3F45", "#474C53", "#5C626A", "#F8F9FA",
     "#C3C8CF", "#8FD3FF", "#0A1620", "#2F4552", "#B8E6FF"},
}};

constexpr std::string_view goldHex = "#E2B04A";
constexpr std::string_view warnHex = "#E38B5A";

// `from` moved `share` of the way towards `to`, channel by channel.
QColor mix(const QColor& from, const QColor& to, double share) {
    auto channel = [share](float a, float b) { return a + float(share) * (b - a); };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()), 1.0f);
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace

const std::array<StonePalette, 6>& StonePalette::all() {
    return palettes;
}

const StonePalette& StonePalette::resolve(std::string_view id) {
    for (const auto& palette : palettes) {
        if (palette.id == id) {
            return palette;
        }
    }
    return palettes.front();
}

QString StonePalette::storedID() {
    QSettings settings;
    QVariant stored = settings.value(QString::fromUtf8(key.data(), qsizetype(key.size())));
    if (!stored.isValid()) {
        return QString::fromUtf8(defaultID.data(), qsizetype(defaultID.size()));
    }
    return stored.toString();
}

void StonePalette::store(const QString& id) {
    QSettings settings;
    settings.setValue(QString::fromUtf8(key.data(), qsizetype(key.size())), id);
}

QColor displayColor(std::string_view hex) {
    std::optional<RGB> rgb = RGB::fromHex(hex);
    if (!rgb) {
        return QColor(); // the tables hold only valid colours; a test checks each one
    }
    return QColor::fromRgbF(static_cast<float>(rgb->r), static_cast<float>(rgb->g),
                            static_cast<float>(rgb->b), 1.0f);
}

Theme::Theme(QObject* parent) : QObject(parent), palette_(&StonePalette::all().front()) {
    reload();
}

Theme* Theme::instance() {
    static Theme* theme = new Theme(nullptr);
    return theme;
}

Theme* Theme::create(QQmlEngine*, QJSEngine*) {
    Theme* theme = instance();
    QJSEngine::setObjectOwnership(theme, QJSEngine::CppOwnership);
    return theme;
}

void Theme::reload() {
    QString id = StonePalette::storedID();
    const StonePalette* palette = &StonePalette::resolve(id.toStdString());
    if (id == themeID_ && palette == palette_) {
        return;
    }
    themeID_ = id;
    palette_ = palette;
    Q_EMIT changed();
}

void Theme::setThemeID(const QString& id) {
    StonePalette::store(id);
    reload();
}

QString Theme::paletteID() const {
    return QString::fromUtf8(palette_->id.data(), qsizetype(palette_->id.size()));
}

QVariantList Theme::palettes() const {
    QVariantList list;
    for (const auto& p : StonePalette::all()) {
        list.append(QVariantMap{
            {"id", QString::fromUtf8(p.id.data(), qsizetype(p.id.size()))},
            {"name", QString::fromUtf8(p.name.data(), qsizetype(p.name.size()))},
            {"kind", QString::fromUtf8(p.kind.data(), qsizetype(p.kind.size()))},
        });
    }
    return list;
}

QColor Theme::ground() const {
    return displayColor(palette_->ground);
}
QColor Theme::surface() const {
    return displayColor(palette_->surface);
}
QColor Theme::surfaceRaised() const {
    return displayColor(palette_->raised);
}
QColor Theme::hairline() const {
    return displayColor(palette_->hairline);
}
QColor Theme::text() const {
    return displayColor(palette_->text);
}
QColor Theme::textMuted() const {
    return displayColor(palette_->muted);
}
QColor Theme::accent() const {
    return displayColor(palette_->accent);
}
QColor Theme::onAccent() const {
    return displayColor(palette_->onAccent);
}
QColor Theme::offlineFill() const {
    return displayColor(palette_->offlineFill);
}
QColor Theme::offlineText() const {
    return displayColor(palette_->offlineText);
}
QColor Theme::gold() const {
    return displayColor(goldHex);
}
QColor Theme::warn() const {
    return displayColor(warnHex);
}

// Brushed metal: the raised colour catching a little light at the top, falling to the
// plain surface colour.
QColor Theme::metalTop() const {
    return surfaceRaised().lighter(112);
}
QColor Theme::metalBottom() const {
    return surface();
}
// The outline is brighter along the top edge, as if lit from above.
QColor Theme::rimTop() const {
    return withAlpha(hairline().lighter(150), 0.9);
}
QColor Theme::rimBottom() const {
    return withAlpha(hairline(), 0.6);
}
QColor Theme::selection() const {
    return withAlpha(accent(), 0.22);
}
QColor Theme::scrim() const {
    return withAlpha(ground(), 0.6);
}
QColor Theme::scrollHandle() const {
    return mix(surfaceRaised(), text(), 0.5);
}
QColor Theme::scrollHandleActive() const {
    return mix(surfaceRaised(), text(), 0.75);
}
QColor Theme::hover() const {
    return withAlpha(text(), 0.06);
}

VxKitTheme kitThemeFor(const Theme& theme) {
    return VxKitTheme{theme.ground(), theme.text(),          theme.textMuted(), theme.hairline(),
                      theme.accent(), theme.surfaceRaised(), theme.surface()};
}

} // namespace quarrydex::ui
