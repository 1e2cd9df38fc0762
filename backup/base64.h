#pragma once
// Standard Base64 (RFC 4648 alphabet "A-Z a-z 0-9 + /", "=" padding, no line breaks), the
// form backups hold photo bytes in.
//
// Checking is strict and separate from decoding: a backup with a stray character in a
// photo is refused as a whole rather than restored with a silently damaged picture.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex::base64 {

// Length of the text for `byteCount` bytes, padding included.
constexpr std::size_t encodedSize(std::size_t byteCount) {
    return (byteCount + 2) / 3 * 4;
}

// Appends the text for `bytes` to `out`. Pieces whose length is a multiple of 3 may be
// encoded one after another; only the last may be shorter.
void encodeAppend(std::string_view bytes, std::string& out);
std::string encode(std::string_view bytes);

// True for well-formed text: a multiple of 4 characters, all from the alphabet, with "="
// only as one or two final padding characters. The empty text is valid (no bytes).
bool isValid(std::string_view text);

// The bytes of well-formed text; none for anything isValid() refuses.
std::optional<std::string> decode(std::string_view text);

} // namespace quarrydex::base64
