#include "store/timestamp.h"

#include <gtest/gtest.h>
#include <limits>

namespace quarrydex {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Edited data files can hold any number; text and calendar days never fail or overflow.
TEST(Timestamp, text_of_a_date_beyond_years_1_to_9999_is_the_nearer_end) {
    const std::pair<double, const char*> cases[] = {
        {1e300, "9999-12-31T23:59:59Z"},
        {infinity, "9999-12-31T23:59:59Z"},
        {Timestamp::latest + 0.999, "9999-12-31T23:59:59Z"},
        {Timestamp::latest + 1, "9999-12-31T23:59:59Z"},
        {-1e300, "0001-01-01T00:00:00Z"},
        {-infinity, "0001-01-01T00:00:00Z"},
        {Timestamp::earliest - 0.5, "0001-01-01T00:00:00Z"},
        {std::numeric_limits<double>::quiet_NaN(), "2001-01-01T00:00:00Z"},
    };
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(Timestamp{seconds}.isoUtc(), text) << seconds;
        EXPECT_EQ(Timestamp{seconds}.utcDate(), std::string(text).substr(0, 10)) << seconds;
        EXPECT_NE(Timestamp{seconds}.localDayOrdinal(), 0) << seconds;
        // What is written reads back as the clamped date.
        EXPECT_EQ(Timestamp::parseIsoUtc(text), Timestamp{seconds}.clamped()) << seconds;
    }
}

TEST(Timestamp, clamping_keeps_dates_inside_the_range_as_they_are) {
    for (double seconds : {Timestamp::earliest, -1.5, 0.0, 782000000.125, Timestamp::latest}) {
        EXPECT_EQ(Timestamp{seconds}.clamped().sinceReference, seconds);
    }
    EXPECT_EQ(Timestamp::parseIsoUtc("0001-01-01T00:00:00Z")->sinceReference, Timestamp::earliest);
    EXPECT_EQ(Timestamp::parseIsoUtc("9999-12-31T23:59:59Z")->sinceReference, Timestamp::latest);
}

} // namespace
} // namespace quarrydex
