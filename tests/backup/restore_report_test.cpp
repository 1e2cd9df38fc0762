#include "backup/restore_report.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

TEST(RestoreReportSummary, counts_are_named_in_one_sentence_and_existing_ones_in_another) {
    EXPECT_EQ((RestoreReport{3, 2, 1, 4}).summary(),
              "Restored 3 collection item(s), 2 history entries and 1 favorite(s). 4 item(s) "
              "were already here and were left untouched.");
}

TEST(RestoreReportSummary, one_history_entry_is_singular) {
    EXPECT_EQ((RestoreReport{0, 1, 0, 0}).summary(),
              "Restored 0 collection item(s), 1 history entry and 0 favorite(s). 0 item(s) were "
              "already here and were left untouched.");
}

TEST(RestoreReportSummary, favorites_alone_count_as_something_restored) {
    EXPECT_EQ((RestoreReport{0, 0, 1, 7}).summary(),
              "Restored 0 collection item(s), 0 history entries and 1 favorite(s). 7 item(s) "
              "were already here and were left untouched.");
}

TEST(RestoreReportSummary, nothing_new_says_how_many_were_checked_after_an_em_dash) {
    EXPECT_EQ((RestoreReport{0, 0, 0, 12}).summary(),
              "Nothing new to restore \xE2\x80\x94 everything in this backup is already here (12 "
              "items checked).");
    EXPECT_EQ((RestoreReport{}).summary(),
              "Nothing new to restore \xE2\x80\x94 everything in this backup is already here (0 "
              "items checked).");
}

TEST(RestoreReportSummary, numbers_have_no_grouping) {
    EXPECT_EQ((RestoreReport{12345, 0, 0, 1000}).summary(),
              "Restored 12345 collection item(s), 0 history entries and 0 favorite(s). 1000 "
              "item(s) were already here and were left untouched.");
}

} // namespace
} // namespace quarrydex
