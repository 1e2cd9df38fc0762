#include "identify/rgb.h"

#include <gtest/gtest.h>

using quarrydex::RGB;

TEST(RGBHex, writing_truncates_each_component) {
    EXPECT_EQ((RGB{1, 0.5, 0}).hex(), "#FF7F00");
    EXPECT_EQ((RGB{0, 0, 0}).hex(), "#000000");
    EXPECT_EQ((RGB{0.999, 0.004, 1}).hex(), "#FE01FF");
}

TEST(RGBHex, reading_accepts_the_usual_forms) {
    auto c = RGB::fromHex("  #3A5FCD\n");
    ASSERT_TRUE(c);
    EXPECT_DOUBLE_EQ(c->r, 0x3A / 255.0);
    EXPECT_DOUBLE_EQ(c->g, 0x5F / 255.0);
    EXPECT_DOUBLE_EQ(c->b, 0xCD / 255.0);
    EXPECT_EQ(RGB::fromHex("3a5fcd"), c);
}

TEST(RGBHex, reading_refuses_anything_but_six_hex_digits) {
    for (const char* bad :
         {"#3A5FC", "#GGGGGG", "", "#", "##3A5FCD", "#3A5FCD0", "3A 5FCD", "+3A5FC"}) {
        EXPECT_FALSE(RGB::fromHex(bad)) << '"' << bad << '"';
    }
}

TEST(RGBHex, every_byte_round_trips) {
    for (int v = 0; v < 256; ++v) {
        RGB c{v / 255.0, v / 255.0, v / 255.0};
        EXPECT_EQ(RGB::fromHex(c.hex()), c) << v;
    }
}
