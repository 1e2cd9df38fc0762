#include "identify/rgb.h"

#include "library/white_space.h"

#include <cassert>
#include <cstdio>

namespace quarrydex {

std::string RGB::hex() const {
    auto byte = [](double c) {
        assert(c > -1.0 && c < 2.0 && "colour component far outside 0...1");
        int v = static_cast<int>(c * 255); // truncation, deliberately
        return v < 0 ? 0 : (v > 255 ? 255 : v);
    };
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02X%02X%02X", byte(r), byte(g), byte(b));
    return buffer;
}

std::optional<RGB> RGB::fromHex(std::string_view text) {
    text = trimWhiteSpace(text);
    if (text.starts_with('#')) {
        text.remove_prefix(1);
    }
    if (text.size() != 6) {
        return std::nullopt;
    }
    unsigned value = 0;
    for (char c : text) {
        int digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else {
            return std::nullopt;
        }
        value = value * 16 + static_cast<unsigned>(digit);
    }
    return RGB{((value >> 16) & 0xFF) / 255.0, ((value >> 8) & 0xFF) / 255.0,
               (value & 0xFF) / 255.0};
}

} // namespace quarrydex
