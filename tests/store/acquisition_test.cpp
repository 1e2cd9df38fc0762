#include "store/acquisition.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

TEST(StoreAcquisition, cases_come_in_picker_order_and_rebuild_from_their_raw_values) {
    std::vector<std::string> raw;
    std::vector<std::string> titles;
    for (Acquisition a : Acquisition::allCases()) {
        raw.emplace_back(a.rawValue());
        titles.push_back(a.title());
        EXPECT_EQ(Acquisition::fromRaw(a.rawValue()), a);
        EXPECT_EQ(a.id(), a.rawValue());
    }
    EXPECT_EQ(raw, (std::vector<std::string>{"found", "bought", "gift", "traded"}));
    EXPECT_EQ(titles, (std::vector<std::string>{"Found", "Bought", "Gift", "Traded"}));
}

TEST(StoreAcquisition, unknown_or_differently_written_words_yield_nothing) {
    for (const char* word : {"stolen", "Found", "GIFT", " found", "", "found "}) {
        EXPECT_EQ(Acquisition::fromRaw(word), std::nullopt) << '"' << word << '"';
    }
}

} // namespace
} // namespace quarrydex
