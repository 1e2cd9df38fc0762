#include "backup/base64.h"

#include <array>
#include <cstdint>

namespace quarrydex::base64 {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t notInAlphabet = 0xFF;

constexpr std::array<std::uint8_t, 256> makeValues() {
    std::array<std::uint8_t, 256> values{};
    values.fill(notInAlphabet);
    for (std::uint8_t i = 0; i < 64; ++i) {
        values[static_cast<unsigned char>(alphabet[i])] = i;
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> values = makeValues();

std::uint8_t valueOf(char c) {
    return values[static_cast<unsigned char>(c)];
}

} // namespace

void encodeAppend(std::string_view bytes, std::string& out) {
    std::size_t start = out.size();
    out.resize(start + encodedSize(bytes.size()));
    char* to = out.data() + start;
    const auto* from = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t whole = bytes.size() / 3 * 3;
    for (std::size_t i = 0; i < whole; i += 3) {
        std::uint32_t n = (std::uint32_t{from[i]} << 16) | (std::uint32_t{from[i + 1]} << 8) |
                          std::uint32_t{from[i + 2]};
        *to++ = alphabet[(n >> 18) & 63];
        *to++ = alphabet[(n >> 12) & 63];
        *to++ = alphabet[(n >> 6) & 63];
        *to++ = alphabet[n & 63];
    }
    std::size_t rest = bytes.size() - whole;
    if (rest > 0) {
        std::uint32_t n = std::uint32_t{from[whole]} << 16;
        if (rest == 2) {
            n |= std::uint32_t{from[whole + 1]} << 8;
        }
        *to++ = alphabet[(n >> 18) & 63];
        *to++ = alphabet[(n >> 12) & 63];
        *to++ = rest == 2 ? alphabet[(n >> 6) & 63] : '=';
        *to++ = '=';
    }
}

std::string encode(std::string_view bytes) {
    std::string out;
    encodeAppend(bytes, out);
    return out;
}

namespace {

// The number of '=' at the end of a text whose length is a multiple of 4.
std::size_t paddingOf(std::string_view text) {
    if (text.empty() || text.back() != '=') {
        return 0;
    }
    return text[text.size() - 2] == '=' ? 2 : 1;
}

} // namespace

bool isValid(std::string_view text) {
    if (text.size() % 4 != 0) {
        return false;
    }
    const std::size_t dataLength = text.size() - paddingOf(text);
    // notInAlphabet is the only value with its high bit set: OR four at a time, test once.
    std::uint8_t seen = 0;
    std::size_t i = 0;
    for (; i + 4 <= dataLength; i += 4) {
        seen |=
            valueOf(text[i]) | valueOf(text[i + 1]) | valueOf(text[i + 2]) | valueOf(text[i + 3]);
    }
    for (; i < dataLength; ++i) {
        seen |= valueOf(text[i]);
    }
    return (seen & 0x80) == 0;
}

std::optional<std::string> decode(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t padding = paddingOf(text);
    std::string out;
    out.resize(text.size() / 4 * 3 - padding);
    char* to = out.data();
    // Checked as it goes, as isValid() does, so the text is read once.
    std::uint8_t seen = 0;
    const std::size_t full = padding == 0 ? text.size() : text.size() - 4;
    for (std::size_t i = 0; i < full; i += 4) {
        std::uint8_t a = valueOf(text[i]), b = valueOf(text[i + 1]), c = valueOf(text[i + 2]),
                     d = valueOf(text[i + 3]);
        seen |= a | b | c | d;
        std::uint32_t n = (std::uint32_t{a} << 18) | (std::uint32_t{b} << 12) |
                          (std::uint32_t{c} << 6) | std::uint32_t{d};
        *to++ = static_cast<char>(n >> 16);
        *to++ = static_cast<char>((n >> 8) & 0xFF);
        *to++ = static_cast<char>(n & 0xFF);
    }
    if (padding > 0) {
        std::size_t i = full;
        std::uint8_t a = valueOf(text[i]), b = valueOf(text[i + 1]);
        std::uint8_t c = padding == 1 ? valueOf(text[i + 2]) : 0;
        seen |= a | b | c;
        std::uint32_t n =
            (std::uint32_t{a} << 18) | (std::uint32_t{b} << 12) | (std::uint32_t{c} << 6);
        *to++ = static_cast<char>(n >> 16);
        if (padding == 1) {
            *to++ = static_cast<char>((n >> 8) & 0xFF);
        }
    }
    if ((seen & 0x80) != 0) {
        return std::nullopt;
    }
    return out;
}

} // namespace quarrydex::base64
