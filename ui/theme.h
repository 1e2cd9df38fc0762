#pragma once
// The six finishes (palettes) of the window and the persisted choice between them. Every
// colour on screen comes from here: screens read the `Theme` singleton, the kit reads the
// same colours through its theme provider (see kitThemeFor).

#include "ui/kit/kit_host.h"
#include "ui/kit/vx_zoom.h"

#include <QColor>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <string_view>

class QQmlEngine;
class QJSEngine;

namespace quarrydex::ui {

// One finish. Colours are "#RRGGBB" texts, as in the rest of the program.
struct StonePalette {
    std::string_view id; // stable, persisted
    std::string_view name;
    std::string_view kind;
    std::string_view ground;
    std::string_view surface;
    std::string_view raised;
    std::string_view hairline;
    std::string_view text;
    std::string_view muted;
    std::string_view accent;
    std::string_view onAccent;
    std::string_view offlineFill;
    std::string_view offlineText;

    // The preference key holding the chosen palette's id.
    static constexpr std::string_view key = "orlo.quarrydex.theme";
    static constexpr std::string_view defaultID = "malachite";

    // Theme menu order.
    static const std::array<StonePalette, 6>& all();
    // The palette with exactly this id (case-sensitive), else Malachite.
    static const StonePalette& resolve(std::string_view id);
    // The stored id as it stands (unknown ids included), "malachite" when none is stored.
    static QString storedID();
    static void store(const QString& id);
    static const StonePalette& current() { return resolve(storedID().toStdString()); }
};

// "#RRGGBB" read as an RGB value, at full opacity.
QColor displayColor(std::string_view hex);

// The colour roles the screens use, always those of the current palette, plus the sizes of
// the interface as multiples of one base unit. One instance per process (see instance());
// changing `themeID` re-colours every binding at once.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(QString themeID READ themeID WRITE setThemeID NOTIFY changed)
    Q_PROPERTY(QString paletteID READ paletteID NOTIFY changed)
    Q_PROPERTY(QVariantList palettes READ palettes CONSTANT)

    Q_PROPERTY(QColor ground READ ground NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor surfaceRaised READ surfaceRaised NOTIFY changed)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY changed)
    Q_PROPERTY(QColor text READ text NOTIFY changed)
    Q_PROPERTY(QColor textMuted READ textMuted NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed)
    Q_PROPERTY(QColor offlineFill READ offlineFill NOTIFY changed)
    Q_PROPERTY(QColor offlineText READ offlineText NOTIFY changed)
    Q_PROPERTY(QColor gold READ gold CONSTANT)
    Q_PROPERTY(QColor warn READ warn CONSTANT)
    // The `metal` gradient of raised panels and the `rim` gradient of their outlines, both
    // vertical, top to bottom.
    Q_PROPERTY(QColor metalTop READ metalTop NOTIFY changed)
    Q_PROPERTY(QColor metalBottom READ metalBottom NOTIFY changed)
    Q_PROPERTY(QColor rimTop READ rimTop NOTIFY changed)
    Q_PROPERTY(QColor rimBottom READ rimBottom NOTIFY changed)
    // Selected rows and hovered controls: the accent, faint.
    Q_PROPERTY(QColor selection READ selection NOTIFY changed)
    Q_PROPERTY(QColor hover READ hover NOTIFY changed)
    // Laid over the window behind a modal dialog.
    Q_PROPERTY(QColor scrim READ scrim NOTIFY changed)
    // The handle of every scroll bar, at rest and under the pointer or dragged: halfway and
    // three quarters from the raised colour to the text, so that it stands out at least 3:1
    // from the ground, the surfaces and the raised panels of every palette.
    Q_PROPERTY(QColor scrollHandle READ scrollHandle NOTIFY changed)
    Q_PROPERTY(QColor scrollHandleActive READ scrollHandleActive NOTIFY changed)
    // Nothing drawn: rows that are neither selected nor hovered.
    Q_PROPERTY(QColor clear READ clear CONSTANT)

    // Sizes, in logical pixels, all multiples of `unit`.
    Q_PROPERTY(int unit MEMBER unit_ CONSTANT)
    Q_PROPERTY(int corner READ corner CONSTANT)
    Q_PROPERTY(int spacingSmall READ spacingSmall CONSTANT)
    Q_PROPERTY(int spacing READ spacing CONSTANT)
    Q_PROPERTY(int spacingLarge READ spacingLarge CONSTANT)
    Q_PROPERTY(int margin READ margin CONSTANT)
    Q_PROPERTY(int fontCaption2 READ fontCaption2 CONSTANT)
    Q_PROPERTY(int fontCaption READ fontCaption CONSTANT)
    Q_PROPERTY(int fontBody READ fontBody CONSTANT)
    Q_PROPERTY(int fontHeadline READ fontHeadline CONSTANT)
    Q_PROPERTY(int fontTitle READ fontTitle CONSTANT)
    Q_PROPERTY(int fontLargeTitle READ fontLargeTitle CONSTANT)
    Q_PROPERTY(int iconSize READ iconSize CONSTANT)
    Q_PROPERTY(int iconLarge READ iconLarge CONSTANT)
    Q_PROPERTY(int rowHeight READ rowHeight CONSTANT)
    Q_PROPERTY(int sidebarMinWidth READ sidebarMinWidth CONSTANT)
    Q_PROPERTY(int sidebarWidth READ sidebarWidth CONSTANT)
    Q_PROPERTY(int detailMinWidth READ detailMinWidth CONSTANT)
    Q_PROPERTY(int scrollBarWidth READ scrollBarWidth CONSTANT)
    Q_PROPERTY(int readingWidth READ readingWidth CONSTANT)
    Q_PROPERTY(int minWindowWidth READ minWindowWidth CONSTANT)
    Q_PROPERTY(int minWindowHeight READ minWindowHeight CONSTANT)
    Q_PROPERTY(int windowWidth READ windowWidth CONSTANT)
    Q_PROPERTY(int windowHeight READ windowHeight CONSTANT)
    Q_PROPERTY(int helpWidth READ helpWidth CONSTANT)
    Q_PROPERTY(int helpHeight READ helpHeight CONSTANT)
    Q_PROPERTY(int helpMinWidth READ helpMinWidth CONSTANT)
    Q_PROPERTY(int helpMinHeight READ helpMinHeight CONSTANT)
    Q_PROPERTY(int dialogWidth READ dialogWidth CONSTANT)
    Q_PROPERTY(int buttonWidth READ buttonWidth CONSTANT)
    // Separators are one pixel wide whatever the unit: the one size outside the grid.
    Q_PROPERTY(qreal hairlineWidth READ hairlineWidth CONSTANT)

public:
    // No default argument: the QML engine must take the shared instance from create().
    explicit Theme(QObject* parent);

    // The process-wide instance the QML singleton hands out. It lives as long as the
    // process and is never owned by an engine, so every window shares one choice.
    static Theme* instance();
    static Theme* create(QQmlEngine*, QJSEngine*);

    QString themeID() const { return themeID_; }
    void setThemeID(const QString& id);
    QString paletteID() const;
    QVariantList palettes() const;
    const StonePalette& palette() const { return *palette_; }

    QColor ground() const;
    QColor surface() const;
    QColor surfaceRaised() const;
    QColor hairline() const;
    QColor text() const;
    QColor textMuted() const;
    QColor accent() const;
    QColor onAccent() const;
    QColor offlineFill() const;
    QColor offlineText() const;
    QColor gold() const;
    QColor warn() const;
    QColor metalTop() const;
    QColor metalBottom() const;
    QColor rimTop() const;
    QColor rimBottom() const;
    QColor selection() const;
    QColor hover() const;
    QColor scrim() const;
    QColor scrollHandle() const;
    QColor scrollHandleActive() const;
    QColor clear() const { return QColor(Qt::transparent); }

    int corner() const { return 8 * unit_; }
    int spacingSmall() const { return 2 * unit_; }
    int spacing() const { return 4 * unit_; }
    int spacingLarge() const { return 8 * unit_; }
    int margin() const { return 12 * unit_; }
    int fontCaption2() const { return 5 * unit_; }
    int fontCaption() const { return 6 * unit_; }
    int fontBody() const { return 7 * unit_; }
    int fontHeadline() const { return 8 * unit_; }
    int fontTitle() const { return 11 * unit_; }
    int fontLargeTitle() const { return 14 * unit_; }
    int iconSize() const { return 9 * unit_; }
    int iconLarge() const { return 24 * unit_; }
    int rowHeight() const { return 16 * unit_; }
    int sidebarMinWidth() const { return 100 * unit_; }
    int sidebarWidth() const { return 110 * unit_; }
    // The smallest window at the largest zoom holds the narrowest sidebar, the split handle
    // and the detail at this width without scrolling as a whole.
    int detailMinWidth() const {
        return int(minWindowWidth() / VxZoom::maximum) - sidebarMinWidth() - spacingSmall();
    }
    int scrollBarWidth() const { return 4 * unit_; }
    int readingWidth() const { return 320 * unit_; }
    int minWindowWidth() const { return 480 * unit_; }
    int minWindowHeight() const { return 320 * unit_; }
    int windowWidth() const { return 600 * unit_; }
    int windowHeight() const { return 400 * unit_; }
    int helpWidth() const { return 440 * unit_; }
    int helpHeight() const { return 320 * unit_; }
    int helpMinWidth() const { return 280 * unit_; }
    int helpMinHeight() const { return 200 * unit_; }
    int dialogWidth() const { return 200 * unit_; }
    int buttonWidth() const { return 50 * unit_; }
    qreal hairlineWidth() const { return 1; }

    // Re-reads the stored choice (another window or process may have changed it).
    Q_INVOKABLE void reload();

Q_SIGNALS:
    void changed();

private:
    QString themeID_;
    const StonePalette* palette_;
    int unit_ = 2;
};

// The kit's colours for the current theme: bg = ground, text = text, dim = textMuted,
// rim = hairline, accent = accent, panelTop = surfaceRaised, panelBottom = surface.
VxKitTheme kitThemeFor(const Theme& theme);

} // namespace quarrydex::ui
