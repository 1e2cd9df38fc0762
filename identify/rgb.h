#pragma once
// A colour as three sRGB components in 0...1 (not linearised), written "#RRGGBB".

#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

struct RGB {
    double r = 0;
    double g = 0;
    double b = 0;

    bool operator==(const RGB&) const = default;

    // "#FF7F00": each component times 255, truncated toward zero.
    std::string hex() const;
    // Accepts "#3A5FCD", "3a5fcd" and either with Unicode white space and line breaks around
    // it (a no-break space too); exactly six hexadecimal digits after an optional "#".
    // Anything else is none.
    static std::optional<RGB> fromHex(std::string_view text);
};

} // namespace quarrydex
