#include "ui/theme.h"
#include "ui_test_support.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <map>

using quarrydex::test::CleanPreferences;
using quarrydex::ui::StonePalette;
using quarrydex::ui::Theme;

namespace {

QString hex(const QColor& c) {
    return c.name(QColor::HexRgb).toUpper();
}

// id, name, kind, then ground, surface, raised, hairline, text, muted, accent, onAccent,
// offlineFill, offlineText: written out again here so a slip in the table shows up.
struct Expected {
    const char* id;
    const char* name;
    const char* kind;
    std::array<const char*, 10> colours;
};

const Expected expected[] = {
    {"malachite",
     "Malachite",
     "green",
     {"#111315", "#1B1E21", "#24282C", "#2E3337", "#F2F1EC", "#A7ABAF", "#4CC79A", "#0B1A14",
      "#173A2D", "#8BE3C0"}},
    {"cobalt",
     "Cobalt",
     "blue",
     {"#0A1018", "#142133", "#1C2D44", "#2A3F5C", "#EEF5FD", "#9DB2CA", "#4FA8FF", "#04101E",
      "#12304F", "#9FD0FF"}},
    {"rosequartz",
     "Rose Quartz",
     "rose",
     {"#160C10", "#2A1820", "#36202A", "#4C2E3A", "#FFF1F4", "#D2A7B4", "#F59BB5", "#2A0A15",
      "#4A2030", "#FFC4D5"}},
    {"amethyst",
     "Amethyst",
     "violet",
     {"#0F0B18", "#1E1730", "#29203F", "#3B2F58", "#F6F1FF", "#B3A6CF", "#B38CFF", "#160A2A",
      "#2E2150", "#D8C6FF"}},
    {"obsidian",
     "Obsidian",
     "black",
     {"#050505", "#121212", "#1A1A1B", "#2A2A2C", "#F4F4F5", "#A1A1A6", "#E6E8EC", "#0A0A0A",
      "#232325", "#D7D9DE"}},
    {"hematite",
     "Hematite",
     "gray",
     {"#2B2E33", "#3B3F45", "#474C53", "#5C626A", "#F8F9FA", "#C3C8CF", "#8FD3FF", "#0A1620",
      "#2F4552", "#B8E6FF"}},
};

std::array<QString, 10> roles(const Theme& t) {
    return {hex(t.ground()),      hex(t.surface()),    hex(t.surfaceRaised()), hex(t.hairline()),
            hex(t.text()),        hex(t.textMuted()),  hex(t.accent()),        hex(t.onAccent()),
            hex(t.offlineFill()), hex(t.offlineText())};
}

} // namespace

TEST(UiTheme, six_palettes_in_menu_order_with_names_and_kinds) {
    ASSERT_EQ(StonePalette::all().size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(StonePalette::all()[i].id, expected[i].id);
        EXPECT_EQ(StonePalette::all()[i].name, expected[i].name);
        EXPECT_EQ(StonePalette::all()[i].kind, expected[i].kind);
    }
    QVariantList menu = Theme(nullptr).palettes();
    ASSERT_EQ(menu.size(), 6);
    EXPECT_EQ(menu[2].toMap().value("name").toString(), "Rose Quartz");
    EXPECT_EQ(menu[2].toMap().value("id").toString(), "rosequartz");
}

TEST(UiTheme, every_colour_role_of_every_palette_is_exact) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    for (const Expected& e : expected) {
        theme.setThemeID(e.id);
        ASSERT_EQ(theme.paletteID(), e.id);
        std::array<QString, 10> actual = roles(theme);
        for (std::size_t r = 0; r < actual.size(); ++r) {
            EXPECT_EQ(actual[r], e.colours[r]) << e.id << " role " << r;
        }
        EXPECT_EQ(theme.ground().alphaF(), 1.0);
    }
}

TEST(UiTheme, gold_and_warn_are_the_same_in_every_palette) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    for (const Expected& e : expected) {
        theme.setThemeID(e.id);
        EXPECT_EQ(hex(theme.gold()), "#E2B04A");
        EXPECT_EQ(hex(theme.warn()), "#E38B5A");
        EXPECT_EQ(theme.corner(), 16);
    }
}

TEST(UiTheme, malachite_is_the_default_when_nothing_is_stored) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    EXPECT_EQ(theme.themeID(), "malachite");
    EXPECT_EQ(theme.paletteID(), "malachite");
    EXPECT_FALSE(CleanPreferences::get("orlo.quarrydex.theme").isValid());
}

TEST(UiTheme, the_choice_is_stored_and_survives_a_restart) {
    CleanPreferences prefs;
    {
        Theme first(nullptr);
        first.setThemeID("amethyst");
    }
    EXPECT_EQ(CleanPreferences::get("orlo.quarrydex.theme").toString(), "amethyst");
    Theme second(nullptr);
    EXPECT_EQ(second.paletteID(), "amethyst");
    EXPECT_EQ(hex(second.accent()), "#B38CFF");
}

TEST(UiTheme, an_unknown_id_gives_malachite_and_is_left_stored) {
    CleanPreferences prefs;
    CleanPreferences::set("orlo.quarrydex.theme", "granite");
    Theme theme(nullptr);
    EXPECT_EQ(theme.themeID(), "granite") << "the menu marks nothing";
    EXPECT_EQ(theme.paletteID(), "malachite");
    EXPECT_EQ(hex(theme.ground()), "#111315");
    EXPECT_EQ(CleanPreferences::get("orlo.quarrydex.theme").toString(), "granite");
}

TEST(UiTheme, ids_are_case_sensitive) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    theme.setThemeID("Cobalt");
    EXPECT_EQ(theme.paletteID(), "malachite");
    EXPECT_EQ(&StonePalette::resolve("cobalt"), &StonePalette::all()[1]);
}

TEST(UiTheme, a_change_notifies_once_and_another_instance_follows_on_reload) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    Theme other(nullptr);
    QSignalSpy changed(&theme, &Theme::changed);
    theme.setThemeID("hematite");
    EXPECT_EQ(changed.count(), 1);
    theme.setThemeID("hematite");
    EXPECT_EQ(changed.count(), 1) << "choosing the current theme changes nothing";
    other.reload();
    EXPECT_EQ(other.paletteID(), "hematite");
}

TEST(UiTheme, the_kit_gets_the_theme_colours_it_is_promised) {
    CleanPreferences prefs;
    Theme theme(nullptr);
    theme.setThemeID("cobalt");
    quarrydex::ui::VxKitTheme kit = kitThemeFor(theme);
    EXPECT_EQ(kit.bg, theme.ground());
    EXPECT_EQ(kit.text, theme.text());
    EXPECT_EQ(kit.dim, theme.textMuted());
    EXPECT_EQ(kit.rim, theme.hairline());
    EXPECT_EQ(kit.accent, theme.accent());
    EXPECT_EQ(kit.panelTop, theme.surfaceRaised());
    EXPECT_EQ(kit.panelBottom, theme.surface());
}

TEST(UiTheme, the_kit_host_asks_its_provider_and_opens_help_through_its_hook) {
    quarrydex::ui::OrloKitHost host(nullptr);
    QColor bg("#123456");
    host.setThemeProvider([&] { return quarrydex::ui::VxKitTheme{bg, {}, {}, {}, {}, {}, {}}; });
    EXPECT_EQ(host.theme().bg, QColor("#123456"));
    bg = QColor("#654321");
    EXPECT_EQ(host.theme().bg, QColor("#654321")) << "asked again on every read";

    QString opened;
    host.showHelp("tests"); // no hook yet: nothing happens
    host.setHelpHook([&](const QString& topic) { opened = topic; });
    host.showHelp("samples");
    EXPECT_EQ(opened, "samples");
}

TEST(UiTheme, every_size_is_a_multiple_of_the_base_unit) {
    Theme theme(nullptr);
    const QMetaObject* meta = theme.metaObject();
    int checked = 0;
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        QMetaProperty p = meta->property(i);
        if (p.metaType().id() != QMetaType::Int) {
            continue;
        }
        int value = p.read(&theme).toInt();
        EXPECT_GT(value, 0) << p.name();
        EXPECT_EQ(value % theme.property("unit").toInt(), 0) << p.name() << " = " << value;
        ++checked;
    }
    EXPECT_GT(checked, 15);
}
