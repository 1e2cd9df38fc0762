#include "ui/kit/vx_zoom.h"
#include "ui_test_support.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using quarrydex::test::CleanPreferences;
using quarrydex::ui::VxZoom;

namespace {

double stored() {
    return CleanPreferences::get("orlo.zoom").toDouble();
}

} // namespace

// Clamping rounds to two decimals half away from zero, then limits. Nothing, zero or a word
// stored reads as actual size; anything else reads back clamped.
TEST(UiZoom, stored_values_read_back_clamped) {
    EXPECT_DOUBLE_EQ(VxZoom::clamp(1.125), 1.13);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(1.124), 1.12);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(-3), 0.85);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(2.004), 2.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(std::numeric_limits<double>::infinity()), 2.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(std::nan("")), 1.0);
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    EXPECT_DOUBLE_EQ(zoom.value(), 1.0);
    const std::pair<QVariant, double> cases[] = {
        {0.0, 1.0}, {"not a number", 1.0}, {5.0, 2.0}, {0.3, 0.85}, {1.234, 1.23}};
    for (const auto& [value, read] : cases) {
        CleanPreferences::set("orlo.zoom", value);
        EXPECT_DOUBLE_EQ(zoom.value(), read) << value.toString().toStdString();
    }
    EXPECT_EQ(zoom.percent(), 123);
    zoom.setValue(1.456);
    EXPECT_DOUBLE_EQ(stored(), 1.46);
    zoom.setValue(9);
    EXPECT_DOUBLE_EQ(stored(), 2.0);
}

TEST(UiZoom, steps_of_0_15_land_on_two_decimals_and_stop_at_the_limits) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    // Exactly, not within a tolerance as the window test compares.
    zoom.zoomIn();
    zoom.zoomIn();
    EXPECT_EQ(stored(), 1.3);
    zoom.zoomOut();
    zoom.zoomOut();
    zoom.zoomOut();
    EXPECT_EQ(stored(), 0.85);
    zoom.setValue(1.95);
    zoom.zoomIn();
    EXPECT_DOUBLE_EQ(stored(), 2.0);
    zoom.zoomIn();
    EXPECT_DOUBLE_EQ(stored(), 2.0);
    zoom.setValue(0.9);
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 0.85);
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 0.85);

    CleanPreferences::set("orlo.zoom", 5.0); // clamped before stepping
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 1.85);
    QSignalSpy changed(&zoom, &VxZoom::valueChanged);
    zoom.setLevel(185);
    zoom.setLevel(175);
    EXPECT_EQ(changed.count(), 1) << "only a change is announced";
    EXPECT_EQ(zoom.percent(), 175);
}
