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

bool isValid(std::string_view text) {
    if (text.size() % 4 != 0) {
        return false;
    }
    std::size_t padding = 0;
    if (!text.empty() && text.back() == '=') {
        padding = text[text.size() - 2] == '=' ? 2 : 1;
    }
    std::size_t dataLength = text.size() - padding;
    for (std::size_t i = 0; i < dataLength; ++i) {
        if (valueOf(text[i]) == notInAlphabet) {
            return false;
        }
    }
    return true;
}

std::optional<std::string> decode(std::string_view text) {
    if (!isValid(text)) {
        return std::nullopt;
    }
    std::size_t padding = text.empty() ? 0 : (text.back() == '=') + (text[text.size() - 2] == '=');
    std::string out;
    out.resize(text.size() / 4 * 3 - padding);
    char* to = out.data();
    std::size_t full = padding == 0 ? text.size() : text.size() - 4;
    for (std::size_t i = 0; i < full; i += 4) {
        std::uint32_t n = (std::uint32_t{valueOf(text[i])} << 18) |
                          (std::uint32_t{valueOf(text[i + 1])} << 12) |
                          (std::uint32_t{valueOf(text[i + 2])} << 6) | valueOf(text[i + 3]);
        *to++ = static_cast<char>(n >> 16);
        *to++ = static_cast<char>((n >> 8) & 0xFF);
        *to++ = static_cast<char>(n & 0xFF);
    }
    if (padding > 0) {
        std::size_t i = full;
        std::uint32_t n =
            (std::uint32_t{valueOf(text[i])} << 18) | (std::uint32_t{valueOf(text[i + 1])} << 12);
        if (padding == 1) {
            n |= std::uint32_t{valueOf(text[i + 2])} << 6;
        }
        *to++ = static_cast<char>(n >> 16);
        if (padding == 1) {
            *to++ = static_cast<char>((n >> 8) & 0xFF);
        }
    }
    return out;
}

} // namespace quarrydex::base64
