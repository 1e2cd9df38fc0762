#pragma once
// Unicode white space, for trimming what users type or paste: text copied from a web page
// often carries a no-break space (U+00A0) or another Unicode space, not only ASCII blanks.

#include <string_view>

namespace quarrydex {

// The code points with Unicode's White_Space property: tab, line feed, vertical tab, form
// feed, carriage return, space, U+0085, U+00A0, U+1680, U+2000 to U+200A, U+2028,
// U+2029, U+202F, U+205F and U+3000.
bool isWhiteSpace(char32_t c);

// Blanks: tab and the Unicode space separators (space, U+00A0, U+1680, U+2000 to U+200A,
// U+202F, U+205F, U+3000); white space without the line breaks.
bool isBlank(char32_t c);

// `text` (UTF-8) without white space (or only blanks) at either end; a view into `text`.
// Bytes that are not valid UTF-8 are neither and stop the trimming.
std::string_view trimWhiteSpace(std::string_view text);
std::string_view trimBlanks(std::string_view text);

} // namespace quarrydex
