#include "backup/base64.h"
#include "backup_test_data.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {

TEST(Base64, rfc4648_vectors_and_every_byte_at_every_padding_length_round_trip) {
    // The vectors are the prefixes of "foobar".
    const char* texts[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
    for (std::size_t n = 0; n < std::size(texts); ++n) {
        const std::string bytes = std::string("foobar").substr(0, n);
        EXPECT_EQ(base64::encode(bytes), texts[n]);
        EXPECT_EQ(base64::decode(texts[n]), bytes) << texts[n];
    }
    for (std::size_t extra = 0; extra < 3; ++extra) {
        std::string bytes = test::allBytes() + std::string(extra, '\xFF');
        std::string text = base64::encode(bytes);
        EXPECT_EQ(text.size(), base64::encodedSize(bytes.size()));
        EXPECT_EQ(base64::decode(text), bytes);
    }
}

// Missing or misplaced padding, a length not a multiple of 4, blanks, line breaks, the
// URL-safe alphabet and non-ASCII bytes are all refused.
TEST(Base64, anything_but_strict_standard_base64_is_refused) {
    for (const char* text : {"Zg", "Zg=", "Z===", "====", "Zg==Zm8=", "Zm9v\n", "Zm 9v", "Zm9-",
                             "Zm9_", "Zm=v", "Zm9\xC3"}) {
        EXPECT_FALSE(base64::isValid(text)) << text;
        EXPECT_FALSE(base64::decode(text)) << text;
    }
}

} // namespace
} // namespace quarrydex
