#include "identify/rgb.h"

#include <gtest/gtest.h>

using quarrydex::RGB;

TEST(RGBHex, writing_truncates_each_component_and_every_byte_round_trips) {
    EXPECT_EQ((RGB{1, 0.5, 0}).hex(), "#FF7F00");
    EXPECT_EQ((RGB{0.999, 0.004, 1}).hex(), "#FE01FF");
    for (int v = 0; v < 256; ++v) {
        RGB c{v / 255.0, v / 255.0, v / 255.0};
        EXPECT_EQ(RGB::fromHex(c.hex()), c) << v;
    }
}

TEST(RGBHex, reading_takes_six_hex_digits_with_or_without_hash_and_blanks_around) {
    EXPECT_EQ(RGB::fromHex("  #3A5FCD\n"), (RGB{0x3A / 255.0, 0x5F / 255.0, 0xCD / 255.0}));
    EXPECT_EQ(RGB::fromHex("3a5fcd"), RGB::fromHex("#3A5FCD"));
    // Pasted from a web page: no-break, ideographic and other Unicode spaces and breaks.
    for (const char* pasted : {"\u00A0#3A5FCD\u00A0", "\u3000#3A5FCD\u2028", "\u2009 3A5FCD\r\n",
                               "\u202F#3A5FCD\u0085"}) {
        EXPECT_EQ(RGB::fromHex(pasted), RGB::fromHex("#3A5FCD")) << '"' << pasted << '"';
    }
    for (const char* bad : {"#3A5FC", "#GGGGGG", "", "#", "##3A5FCD", "#3A5FCD0", "3A 5FCD",
                            "+3A5FC", "\u00A0", "#3A\u00A05FCD", "\u200B#3A5FCD"}) {
        EXPECT_FALSE(RGB::fromHex(bad)) << '"' << bad << '"';
    }
}
