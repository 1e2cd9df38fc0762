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

TEST(UiZoom, clamp_rounds_to_two_decimals_half_away_from_zero_then_limits) {
    EXPECT_DOUBLE_EQ(VxZoom::clamp(1.125), 1.13);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(1.124), 1.12);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(1.0), 1.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(0.5), 0.85);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(-3), 0.85);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(2.004), 2.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(7), 2.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(std::numeric_limits<double>::infinity()), 2.0);
    EXPECT_DOUBLE_EQ(VxZoom::clamp(std::nan("")), 1.0);
}

TEST(UiZoom, nothing_stored_and_zero_read_as_actual_size) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    EXPECT_DOUBLE_EQ(zoom.value(), 1.0);
    CleanPreferences::set("orlo.zoom", 0.0);
    EXPECT_DOUBLE_EQ(zoom.value(), 1.0);
    CleanPreferences::set("orlo.zoom", "not a number");
    EXPECT_DOUBLE_EQ(zoom.value(), 1.0);
}

TEST(UiZoom, stored_values_read_back_clamped) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    CleanPreferences::set("orlo.zoom", 5.0);
    EXPECT_DOUBLE_EQ(zoom.value(), 2.0);
    CleanPreferences::set("orlo.zoom", 0.3);
    EXPECT_DOUBLE_EQ(zoom.value(), 0.85);
    CleanPreferences::set("orlo.zoom", 1.234);
    EXPECT_DOUBLE_EQ(zoom.value(), 1.23);
    EXPECT_EQ(zoom.percent(), 123);
}

TEST(UiZoom, writing_stores_the_clamped_value) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    zoom.setValue(1.456);
    EXPECT_DOUBLE_EQ(stored(), 1.46);
    zoom.setValue(9);
    EXPECT_DOUBLE_EQ(stored(), 2.0);
}

TEST(UiZoom, zoom_in_from_1_95_stores_2_and_stays_there) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    zoom.setValue(1.95);
    zoom.zoomIn();
    EXPECT_DOUBLE_EQ(stored(), 2.0);
    zoom.zoomIn();
    EXPECT_DOUBLE_EQ(stored(), 2.0);
}

TEST(UiZoom, zoom_out_from_0_9_stores_0_85) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    zoom.setValue(0.9);
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 0.85);
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 0.85);
}

TEST(UiZoom, steps_of_0_15_from_actual_size_land_on_two_decimals) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    zoom.zoomIn();
    EXPECT_EQ(stored(), 1.15);
    zoom.zoomIn();
    EXPECT_EQ(stored(), 1.3);
    zoom.zoomOut();
    zoom.zoomOut();
    zoom.zoomOut();
    EXPECT_EQ(stored(), 0.85);
    zoom.actualSize();
    EXPECT_EQ(stored(), 1.0);
}

TEST(UiZoom, a_stored_value_out_of_range_is_clamped_before_stepping) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    CleanPreferences::set("orlo.zoom", 5.0);
    zoom.zoomOut();
    EXPECT_DOUBLE_EQ(stored(), 1.85);
}

TEST(UiZoom, zoom_level_choices_store_the_level_over_100) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    QVariantList levels = zoom.levels();
    ASSERT_EQ(levels, (QVariantList{85, 100, 115, 130, 150, 175, 200}));
    zoom.setLevel(115);
    EXPECT_EQ(stored(), 1.15);
    zoom.setLevel(175);
    EXPECT_EQ(stored(), 1.75);
    EXPECT_EQ(zoom.percent(), 175);
}

TEST(UiZoom, a_change_is_announced_and_a_non_change_is_not) {
    CleanPreferences prefs;
    VxZoom zoom(nullptr);
    QSignalSpy changed(&zoom, &VxZoom::valueChanged);
    zoom.zoomIn();
    EXPECT_EQ(changed.count(), 1);
    zoom.setLevel(115);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(zoom.min(), 0.85);
    EXPECT_EQ(zoom.max(), 2.0);
    EXPECT_EQ(zoom.step(), 0.15);
}
