#include "library/white_space.h"

#include <cstddef>

namespace quarrydex {

namespace {

// The code point of the UTF-8 sequence of `length` bytes at `s`; U+FFFD (not white space)
// for anything ill-formed.
char32_t decode(std::string_view s, std::size_t length) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    constexpr char32_t bad = 0xFFFD;
    if (length == 0 || length > s.size()) {
        return bad;
    }
    unsigned char lead = byte(0);
    char32_t c;
    std::size_t expected;
    if (lead < 0x80) {
        c = lead;
        expected = 1;
    } else if ((lead & 0xE0) == 0xC0) {
        c = lead & 0x1F;
        expected = 2;
    } else if ((lead & 0xF0) == 0xE0) {
        c = lead & 0x0F;
        expected = 3;
    } else if ((lead & 0xF8) == 0xF0) {
        c = lead & 0x07;
        expected = 4;
    } else {
        return bad;
    }
    if (expected != length) {
        return bad;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return bad;
        }
        c = (c << 6) | (byte(i) & 0x3F);
    }
    // An over-long form ("\xC0\xA0" for a space) is not that character.
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c < smallest[length] ? bad : c;
}

// Length of the sequence that starts with `lead`; 0 for a byte that cannot start one.
std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if ((lead & 0xE0) == 0xC0) {
        return 2;
    }
    if ((lead & 0xF0) == 0xE0) {
        return 3;
    }
    if ((lead & 0xF8) == 0xF0) {
        return 4;
    }
    return 0;
}

template <class Predicate> std::string_view trim(std::string_view text, Predicate isSpace) {
    while (!text.empty()) {
        std::size_t length = sequenceLength(static_cast<unsigned char>(text.front()));
        if (length == 0 || !isSpace(decode(text, length))) {
            break;
        }
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        // Back over continuation bytes to the lead byte of the last sequence.
        std::size_t start = text.size() - 1;
        while (start > 0 && text.size() - start < 4 &&
               (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) {
            --start;
        }
        std::string_view last = text.substr(start);
        if (!isSpace(decode(last, last.size()))) {
            break;
        }
        text.remove_suffix(last.size());
    }
    return text;
}

} // namespace

bool isBlank(char32_t c) {
    return c == 0x09 || c == 0x20 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) ||
           c == 0x202F || c == 0x205F || c == 0x3000;
}

bool isWhiteSpace(char32_t c) {
    return isBlank(c) || (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

std::string_view trimWhiteSpace(std::string_view text) {
    return trim(text, isWhiteSpace);
}

std::string_view trimBlanks(std::string_view text) {
    return trim(text, isBlank);
}

} // namespace quarrydex
