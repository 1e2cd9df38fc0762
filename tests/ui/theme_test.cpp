#include "ui/theme.h"
#include "ui_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using quarrydex::test::CleanPreferences;
using quarrydex::ui::StonePalette;
using quarrydex::ui::Theme;

namespace {

QString hex(const QColor& c) {
    return c.name(QColor::HexRgb).toUpper();
}

} // namespace

// The ids are stored in the preferences, so they and their menu order must stay.
TEST(UiTheme, six_palettes_in_menu_order) {
    std::vector<std::string_view> ids;
    for (const StonePalette& p : StonePalette::all()) {
        ids.push_back(p.id);
    }
    EXPECT_EQ(ids, (std::vector<std::string_view>{"malachite", "cobalt", "rosequartz", "amethyst",
                                                  "obsidian", "hematite"}));
    EXPECT_EQ(Theme(nullptr).palettes()[2].toMap().value("id").toString(), "rosequartz");
}

// The default palette, written out in full; gold, warn and the corner are shared by all.
TEST(UiTheme, every_colour_role_of_malachite_is_exact) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    const std::vector<QString> roles = {
        hex(theme.ground()),      hex(theme.surface()),  hex(theme.surfaceRaised()),
        hex(theme.hairline()),    hex(theme.text()),     hex(theme.textMuted()),
        hex(theme.accent()),      hex(theme.onAccent()), hex(theme.offlineFill()),
        hex(theme.offlineText()), hex(theme.gold()),     hex(theme.warn())};
    EXPECT_EQ(roles, (std::vector<QString>{"#111315", "#1B1E21", "#24282C", "#2E3337", "#F2F1EC",
                                           "#A7ABAF", "#4CC79A", "#0B1A14", "#173A2D", "#8BE3C0",
                                           "#E2B04A", "#E38B5A"}));
    EXPECT_EQ(theme.ground().alphaF(), 1.0);
    EXPECT_EQ(theme.corner(), 16);
}

TEST(UiTheme, the_choice_is_stored_survives_a_restart_and_unknown_ids_fall_back) {
    CleanPreferences prefs;
    {
        Theme first(nullptr);
        EXPECT_EQ(first.paletteID(), "malachite") << "the default when nothing is stored";
        EXPECT_FALSE(CleanPreferences::get("orlo.quarrydex.theme").isValid());
        first.setThemeID("amethyst");
    }
    EXPECT_EQ(CleanPreferences::get("orlo.quarrydex.theme").toString(), "amethyst");
    Theme second(nullptr);
    EXPECT_EQ(second.paletteID(), "amethyst");
    EXPECT_EQ(hex(second.accent()), "#B38CFF");

    // An unknown or differently cased id gives malachite and is left stored.
    CleanPreferences::set("orlo.quarrydex.theme", "granite");
    Theme theme(nullptr);
    EXPECT_EQ(theme.themeID(), "granite") << "the menu marks nothing";
    EXPECT_EQ(theme.paletteID(), "malachite");
    EXPECT_EQ(hex(theme.ground()), "#111315");
    EXPECT_EQ(CleanPreferences::get("orlo.quarrydex.theme").toString(), "granite");
    theme.setThemeID("Cobalt");
    EXPECT_EQ(theme.paletteID(), "malachite");
    EXPECT_EQ(&StonePalette::resolve("cobalt"), &StonePalette::all()[1]);
}

namespace {

// The contrast ratio of two colours by their relative luminance, as accessibility guidelines
// define it: 1 for equal colours, 21 for black on white.
double contrast(const QColor& a, const QColor& b) {
    auto luminance = [](const QColor& c) {
        auto linear = [](double v) {
            return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

} // namespace

// Scroll bars sit on the ground, on surfaces and on raised panels; their handle must stand
// out at least 3:1 from each, at rest and under the pointer, in every palette.
TEST(UiTheme, scroll_handles_stand_out_from_every_background_of_every_palette) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21.0, 1e-9);
    CleanPreferences prefs;
    Theme theme(nullptr);
    for (const StonePalette& p : StonePalette::all()) {
        theme.setThemeID(QString::fromUtf8(p.id.data(), qsizetype(p.id.size())));
        for (const QColor& handle : {theme.scrollHandle(), theme.scrollHandleActive()}) {
            for (const QColor& behind : {theme.ground(), theme.surface(), theme.surfaceRaised()}) {
                EXPECT_GE(contrast(handle, behind), 3.0)
                    << p.id << ": " << hex(handle).toStdString() << " on "
                    << hex(behind).toStdString();
            }
        }
        EXPECT_EQ(theme.scrollHandle().alphaF(), 1.0) << "drawn solid, not faded";
    }
    // The lightest ground of all, where a faint handle would vanish first.
    EXPECT_EQ(hex(theme.ground()), "#2B2E33");
}
