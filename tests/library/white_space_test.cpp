#include "library/white_space.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

TEST(WhiteSpace, trimming_removes_unicode_spaces_and_breaks_at_both_ends_only) {
    EXPECT_EQ(trimWhiteSpace("\u00A0\u1680\u2000\u200A\u205F x \u3000y\t\n\v\f\r\u0085\u2029"),
              "x \u3000y");
    EXPECT_EQ(trimWhiteSpace(" \u00A0 "), "");
    EXPECT_EQ(trimWhiteSpace(""), "");
    EXPECT_EQ(trimWhiteSpace("\u200B x \uFEFF"), "\u200B x \uFEFF") << "zero width is no space";
    EXPECT_EQ(trimWhiteSpace("\u00E9\u00A0"), "\u00E9") << "a two-byte letter before it stays";
}

TEST(WhiteSpace, blanks_are_white_space_without_the_line_breaks) {
    EXPECT_EQ(trimBlanks("\t\u00A0 x \u2009\u3000"), "x");
    EXPECT_EQ(trimBlanks("\nx\u2028"), "\nx\u2028");
    for (char32_t c : {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029}) {
        EXPECT_TRUE(isWhiteSpace(c)) << static_cast<unsigned>(c);
        EXPECT_FALSE(isBlank(c)) << static_cast<unsigned>(c);
    }
}

TEST(WhiteSpace, bytes_that_are_not_utf8_stop_the_trimming_and_are_kept) {
    EXPECT_EQ(trimWhiteSpace("\xA0x\xA0"), "\xA0x\xA0") << "a lone continuation byte";
    EXPECT_EQ(trimWhiteSpace("\xC2 x\xC2"), "\xC2 x\xC2") << "a cut-off no-break space";
    EXPECT_EQ(trimWhiteSpace("x\xE2\x80"), "x\xE2\x80");
    EXPECT_EQ(trimWhiteSpace("\xC0\xA0x"), "\xC0\xA0x") << "an over-long space";
    EXPECT_EQ(trimWhiteSpace("x\xF0\x9F\x92\x8E "), "x\xF0\x9F\x92\x8E");
}

} // namespace
} // namespace quarrydex
