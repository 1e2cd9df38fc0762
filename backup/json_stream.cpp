#include "backup/json_stream.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fcntl.h>
#include <glib.h> // g_ascii_strtod: locale-independent fallback for out-of-range numbers
#include <unistd.h>

namespace quarrydex {

std::string_view JsonMemorySource::next() {
    std::string_view piece = rest_;
    rest_ = {};
    return piece;
}

JsonFileSource::JsonFileSource(const std::filesystem::path& file, std::size_t pieceSize)
    : buffer_(pieceSize) {
    fd_ = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd_ < 0) {
        error_ = errno;
    }
}

JsonFileSource::~JsonFileSource() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
}

std::string_view JsonFileSource::next() {
    while (fd_ >= 0) {
        ssize_t n = ::read(fd_, buffer_.data(), buffer_.size());
        if (n > 0) {
            return {buffer_.data(), static_cast<std::size_t>(n)};
        }
        if (n < 0 && errno == EINTR) {
            continue;
        }
        if (n < 0) {
            error_ = errno;
        }
        ::close(fd_);
        fd_ = -1;
    }
    return {};
}

namespace {

using Sax = nlohmann::json_sax<nlohmann::json>;
constexpr int endOfInput = -1;

// Bytes that may be copied into a string as they are: printable ASCII except '"' and '\'.
constexpr std::array<bool, 256> makePlain() {
    std::array<bool, 256> plain{};
    for (int c = 0x20; c < 0x80; ++c) {
        plain[static_cast<std::size_t>(c)] = c != '"' && c != '\\';
    }
    return plain;
}
constexpr std::array<bool, 256> plain = makePlain();

// The parser proper. Values nest through an explicit stack rather than recursion:
//
//   value ──'{'──▶ [object] ── '}' ─────────────────────────────▶ after value
//            │         └──── key ':' value (',' key ':' value)* '}' ┘
//            └─'['──▶ [array]  ── ']' | value (',' value)* ']' ──▶ after value
//   after value: stack empty ─▶ only whitespace may follow, then the end.
class Parser {
public:
    Parser(JsonSource& source, Sax& sax) : source_(source), sax_(sax) {}

    bool run();

private:
    enum class Container : char { object, array };

    bool refill();
    int peek() {
        if (pos_ == end_ && !refill()) {
            return endOfInput;
        }
        return static_cast<unsigned char>(*pos_);
    }
    int get() {
        int c = peek();
        if (c != endOfInput) {
            ++pos_;
        }
        return c;
    }
    std::size_t position() const {
        return consumedBefore_ + static_cast<std::size_t>(pos_ - begin_);
    }
    void skipWhitespace();
    bool fail(const std::string& message);
    bool expect(char wanted, const char* what);

    enum class Step { failed, done, opened };
    Step value();
    bool key();
    bool string(std::string& out);
    bool escape(std::string& out);
    bool hex4(unsigned& unit);
    bool utf8(int lead, std::string& out);
    bool literal(const char* rest, std::string_view word);
    bool number();

    JsonSource& source_;
    Sax& sax_;
    const char* begin_ = nullptr;
    const char* pos_ = nullptr;
    const char* end_ = nullptr;
    std::size_t consumedBefore_ = 0;
    bool atEnd_ = false;
    std::vector<Container> stack_;
    std::string text_;
};

bool Parser::refill() {
    if (atEnd_) {
        return false;
    }
    consumedBefore_ += static_cast<std::size_t>(end_ - begin_);
    std::string_view piece = source_.next();
    if (piece.empty()) {
        atEnd_ = true;
        begin_ = pos_ = end_ = nullptr;
        return false;
    }
    begin_ = pos_ = piece.data();
    end_ = piece.data() + piece.size();
    return true;
}

void Parser::skipWhitespace() {
    for (;;) {
        int c = peek();
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
            return;
        }
        ++pos_;
    }
}

bool Parser::fail(const std::string& message) {
    std::size_t at = position();
    sax_.parse_error(at, "", nlohmann::json::parse_error::create(101, at, message, nullptr));
    return false;
}

bool Parser::expect(char wanted, const char* what) {
    skipWhitespace();
    if (get() != wanted) {
        return fail(std::string("expected ") + what);
    }
    return true;
}

bool Parser::run() {
    // A leading byte order mark is tolerated, as other JSON readers do.
    if (peek() == 0xEF) {
        ++pos_;
        if (get() != 0xBB || get() != 0xBF) {
            return fail("invalid byte order mark");
        }
    }
    for (;;) {
        skipWhitespace();
        Step step = value();
        if (step == Step::failed) {
            return false;
        }
        if (step == Step::opened) {
            continue; // the first member's value is due
        }
        // After a value: close finished containers until the next value is due.
        for (;;) {
            if (stack_.empty()) {
                skipWhitespace();
                return peek() == endOfInput || fail("unexpected content after the value");
            }
            skipWhitespace();
            int c = get();
            if (stack_.back() == Container::object) {
                if (c == ',') {
                    if (!key()) {
                        return false;
                    }
                    break;
                }
                if (c == '}') {
                    stack_.pop_back();
                    if (!sax_.end_object()) {
                        return false;
                    }
                    continue;
                }
                return fail("expected ',' or '}'");
            }
            if (c == ',') {
                break;
            }
            if (c == ']') {
                stack_.pop_back();
                if (!sax_.end_array()) {
                    return false;
                }
                continue;
            }
            return fail("expected ',' or ']'");
        }
    }
}

// One value. A container is only opened here (with its first key read, for an object);
// its members follow in run().
Parser::Step Parser::value() {
    auto done = [](bool ok) { return ok ? Step::done : Step::failed; };
    int c = get();
    switch (c) {
    case '{':
    case '[': {
        bool object = c == '{';
        if (stack_.size() >= maxJsonDepth) {
            return done(fail("nesting too deep"));
        }
        if (!(object ? sax_.start_object(static_cast<std::size_t>(-1))
                     : sax_.start_array(static_cast<std::size_t>(-1)))) {
            return Step::failed;
        }
        skipWhitespace();
        if (peek() == (object ? '}' : ']')) {
            ++pos_;
            return done(object ? sax_.end_object() : sax_.end_array());
        }
        stack_.push_back(object ? Container::object : Container::array);
        if (object && !key()) {
            return Step::failed;
        }
        return Step::opened;
    }
    case '"':
        return done(string(text_) && sax_.string(text_));
    case 't':
        return done(literal("rue", "true") && sax_.boolean(true));
    case 'f':
        return done(literal("alse", "false") && sax_.boolean(false));
    case 'n':
        return done(literal("ull", "null") && sax_.null());
    case endOfInput:
        return done(fail("unexpected end of input"));
    default:
        if (c == '-' || (c >= '0' && c <= '9')) {
            --pos_; // get() took this byte from the current piece, so it is still there
            return done(number());
        }
        return done(fail("unexpected character"));
    }
}

bool Parser::key() {
    if (!expect('"', "a key")) {
        return false;
    }
    if (!string(text_) || !sax_.key(text_)) {
        return false;
    }
    if (!expect(':', "':'")) {
        return false;
    }
    skipWhitespace();
    return true;
}

bool Parser::string(std::string& out) {
    out.clear();
    for (;;) {
        const char* run = pos_;
        while (run < end_ && plain[static_cast<unsigned char>(*run)]) {
            ++run;
        }
        out.append(pos_, run);
        pos_ = run;
        int c = get();
        if (c == '"') {
            return true;
        }
        if (c == endOfInput) {
            return fail("unterminated string");
        }
        if (c == '\\') {
            if (!escape(out)) {
                return false;
            }
        } else if (c < 0x20) {
            return fail("control character in a string");
        } else if (c >= 0x80) {
            if (!utf8(c, out)) {
                return false;
            }
        } else {
            out.push_back(static_cast<char>(c)); // a piece ended inside a run
        }
    }
}

bool Parser::hex4(unsigned& unit) {
    unit = 0;
    for (int i = 0; i < 4; ++i) {
        int c = get();
        unsigned digit;
        if (c >= '0' && c <= '9') {
            digit = static_cast<unsigned>(c - '0');
        } else if (c >= 'a' && c <= 'f') {
            digit = static_cast<unsigned>(c - 'a' + 10);
        } else if (c >= 'A' && c <= 'F') {
            digit = static_cast<unsigned>(c - 'A' + 10);
        } else {
            return fail("invalid \\u escape");
        }
        unit = unit * 16 + digit;
    }
    return true;
}

bool Parser::escape(std::string& out) {
    int c = get();
    switch (c) {
    case '"':
    case '\\':
    case '/':
        out.push_back(static_cast<char>(c));
        return true;
    case 'b':
        out.push_back('\b');
        return true;
    case 'f':
        out.push_back('\f');
        return true;
    case 'n':
        out.push_back('\n');
        return true;
    case 'r':
        out.push_back('\r');
        return true;
    case 't':
        out.push_back('\t');
        return true;
    case 'u':
        break;
    default:
        return fail("invalid escape");
    }
    unsigned unit;
    if (!hex4(unit)) {
        return false;
    }
    std::uint32_t code = unit;
    if (unit >= 0xDC00 && unit <= 0xDFFF) {
        return fail("unpaired surrogate");
    }
    if (unit >= 0xD800 && unit <= 0xDBFF) {
        unsigned low;
        if (get() != '\\' || get() != 'u' || !hex4(low)) {
            return fail("unpaired surrogate");
        }
        if (low < 0xDC00 || low > 0xDFFF) {
            return fail("unpaired surrogate");
        }
        code = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
    return true;
}

// One multi-byte UTF-8 sequence whose lead byte was read; well-formed per RFC 3629 (no
// overlong forms, no surrogates, nothing above U+10FFFF).
bool Parser::utf8(int lead, std::string& out) {
    int count;
    int low = 0x80;
    int high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        count = 1;
    } else if (lead == 0xE0) {
        count = 2;
        low = 0xA0;
    } else if ((lead >= 0xE1 && lead <= 0xEC) || lead == 0xEE || lead == 0xEF) {
        count = 2;
    } else if (lead == 0xED) {
        count = 2;
        high = 0x9F;
    } else if (lead == 0xF0) {
        count = 3;
        low = 0x90;
    } else if (lead >= 0xF1 && lead <= 0xF3) {
        count = 3;
    } else if (lead == 0xF4) {
        count = 3;
        high = 0x8F;
    } else {
        return fail("invalid UTF-8");
    }
    out.push_back(static_cast<char>(lead));
    for (int i = 0; i < count; ++i) {
        int c = get();
        if (c < low || c > high) {
            return fail("invalid UTF-8");
        }
        out.push_back(static_cast<char>(c));
        low = 0x80;
        high = 0xBF;
    }
    return true;
}

bool Parser::literal(const char* rest, std::string_view word) {
    for (const char* p = rest; *p; ++p) {
        if (get() != *p) {
            return fail("invalid literal, expected " + std::string(word));
        }
    }
    return true;
}

bool Parser::number() {
    std::string& t = text_;
    t.clear();
    auto digits = [&] {
        std::size_t before = t.size();
        for (int c = peek(); c >= '0' && c <= '9'; c = peek()) {
            t.push_back(static_cast<char>(c));
            ++pos_;
        }
        return t.size() > before;
    };
    if (peek() == '-') {
        t.push_back('-');
        ++pos_;
    }
    if (peek() == '0') {
        t.push_back('0');
        ++pos_;
    } else if (!digits()) {
        return fail("invalid number");
    }
    bool integral = true;
    if (peek() == '.') {
        integral = false;
        t.push_back('.');
        ++pos_;
        if (!digits()) {
            return fail("invalid number");
        }
    }
    if (peek() == 'e' || peek() == 'E') {
        integral = false;
        t.push_back(static_cast<char>(get()));
        if (peek() == '+' || peek() == '-') {
            t.push_back(static_cast<char>(get()));
        }
        if (!digits()) {
            return fail("invalid number");
        }
    }
    const char* first = t.data();
    const char* last = t.data() + t.size();
    if (integral) {
        if (t[0] == '-') {
            std::int64_t n = 0;
            if (auto [p, ec] = std::from_chars(first, last, n); ec == std::errc{} && p == last) {
                return sax_.number_integer(n);
            }
        } else {
            std::uint64_t n = 0;
            if (auto [p, ec] = std::from_chars(first, last, n); ec == std::errc{} && p == last) {
                return sax_.number_unsigned(n);
            }
        }
    }
    double d = 0;
    auto [p, ec] = std::from_chars(first, last, d);
    if (ec != std::errc{} || p != last) {
        // Out of range: strtod gives infinity or (for a tiny number) zero or a subnormal.
        d = g_ascii_strtod(t.c_str(), nullptr);
    }
    if (!std::isfinite(d)) {
        return fail("number overflow"); // as nlohmann: JSON numbers are finite
    }
    return sax_.number_float(d, t);
}

} // namespace

bool parseJsonStream(JsonSource& source, nlohmann::json_sax<nlohmann::json>& sax) {
    Parser parser(source, sax);
    return parser.run();
}

} // namespace quarrydex
