#include "backup/restore_report.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

// Counts without grouping; "entry" for exactly one history entry; favorites alone count as
// something restored; nothing new says how many were checked after an em dash.
TEST(RestoreReportSummary, each_count_is_named_in_its_sentence) {
    const std::pair<RestoreReport, const char*> cases[] = {
        {{3, 2, 1, 4},
         "Restored 3 collection item(s), 2 history entries and 1 favorite(s). 4 "
         "item(s) were already here and were left untouched."},
        {{0, 1, 0, 0},
         "Restored 0 collection item(s), 1 history entry and 0 favorite(s). 0 "
         "item(s) were already here and were left untouched."},
        {{0, 0, 1, 7},
         "Restored 0 collection item(s), 0 history entries and 1 favorite(s). 7 "
         "item(s) were already here and were left untouched."},
        {{12345, 0, 0, 1000},
         "Restored 12345 collection item(s), 0 history entries and 0 "
         "favorite(s). 1000 item(s) were already here and were left "
         "untouched."},
        {{0, 0, 0, 12},
         "Nothing new to restore \xE2\x80\x94 everything in this backup is "
         "already here (12 items checked)."},
        {{},
         "Nothing new to restore \xE2\x80\x94 everything in this backup is already here "
         "(0 items checked)."},
    };
    for (const auto& [report, sentence] : cases) {
        EXPECT_EQ(report.summary(), sentence);
    }
}

} // namespace
} // namespace quarrydex
