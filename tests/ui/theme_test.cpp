#include "ui/theme.h"
#include "ui_test_support.h"

#include <gtest/gtest.h>

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
