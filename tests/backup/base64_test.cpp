#include "backup/base64.h"
#include "backup_test_data.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

TEST(Base64, rfc4648_test_vectors_encode_and_decode) {
    const std::pair<std::string, std::string> vectors[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},
    };
    for (const auto& [bytes, text] : vectors) {
        EXPECT_EQ(base64::encode(bytes), text);
        EXPECT_EQ(base64::decode(text), bytes) << text;
    }
}

TEST(Base64, every_byte_value_round_trips_at_every_padding_length) {
    for (std::size_t extra = 0; extra < 3; ++extra) {
        std::string bytes = test::allBytes() + std::string(extra, '\xFF');
        std::string text = base64::encode(bytes);
        EXPECT_EQ(text.size(), base64::encodedSize(bytes.size()));
        EXPECT_EQ(base64::decode(text), bytes);
    }
}

TEST(Base64, pieces_of_a_multiple_of_three_bytes_join_into_the_whole_text) {
    std::string bytes = test::allBytes(4) + "xy";
    std::string joined;
    for (std::size_t at = 0; at < bytes.size(); at += 99) {
        base64::encodeAppend(std::string_view(bytes).substr(at, 99), joined);
    }
    EXPECT_EQ(joined, base64::encode(bytes));
}

TEST(Base64, anything_but_strict_standard_base64_is_refused) {
    const char* bad[] = {
        "Zg",       // padding missing
        "Zg=",      // length not a multiple of 4
        "Z===",     // three padding characters
        "====",     // padding only
        "Zg==Zm8=", // padding in the middle
        "Zm9v\n",   // line break
        "Zm 9v",    // blank
        "Zm9-",     // URL-safe alphabet
        "Zm9_",     // URL-safe alphabet
        "Zm=v",     // padding before data
        "Zm9\xC3",  // not ASCII
    };
    for (const char* text : bad) {
        EXPECT_FALSE(base64::isValid(text)) << text;
        EXPECT_FALSE(base64::decode(text)) << text;
    }
}

} // namespace
} // namespace quarrydex
