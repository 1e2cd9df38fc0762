#pragma once
// A streaming JSON reader that reports to nlohmann's SAX interface, for backups too large
// to hold in memory.
//
// Why not nlohmann::json::sax_parse: its lexer handles one character at a time through
// several buffers and reads about 100 MB/s here, while a backup is mostly a few long
// Base64 strings. This reader copies runs of plain string characters in one step and is
// several times faster. It accepts exactly RFC 8259 JSON, as nlohmann does: one value,
// optional whitespace around it and an optional leading UTF-8 byte order mark; strings
// must be valid UTF-8 and may not hold raw control characters; unpaired surrogate
// escapes and numbers too large for a double are refused. Numbers are reported as nlohmann would
// report them (integers that fit as number_integer or number_unsigned, everything else as
// number_float). Nesting deeper than maxDepth is refused, so hostile input cannot grow the stack
// without bound.

#include <nlohmann/json.hpp>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

// Where the bytes come from, a piece at a time.
class JsonSource {
public:
    virtual ~JsonSource() = default;
    // The next piece of input; an empty view at the end of the input or after a failure.
    virtual std::string_view next() = 0;
};

// The whole input already in memory; it must outlive the source.
class JsonMemorySource final : public JsonSource {
public:
    explicit JsonMemorySource(std::string_view bytes) : rest_(bytes) {}
    std::string_view next() override;

private:
    std::string_view rest_;
};

// A file read in pieces of a fixed size. A failure to open or read ends the input early
// and is kept as an errno value, so callers can tell a damaged file from one they could
// not read.
class JsonFileSource final : public JsonSource {
public:
    explicit JsonFileSource(const std::filesystem::path& file, std::size_t pieceSize = 1 << 18);
    ~JsonFileSource() override;
    JsonFileSource(const JsonFileSource&) = delete;
    JsonFileSource& operator=(const JsonFileSource&) = delete;

    std::string_view next() override;
    // 0, or the errno of the failed open or read.
    int error() const { return error_; }

private:
    int fd_ = -1;
    int error_ = 0;
    std::vector<char> buffer_;
};

inline constexpr std::size_t maxJsonDepth = 512;

// Reads one JSON value from `source` and reports it to `sax`. Returns false when the input
// is not JSON (after calling sax.parse_error) or when a SAX callback returned false.
bool parseJsonStream(JsonSource& source, nlohmann::json_sax<nlohmann::json>& sax);

} // namespace quarrydex
