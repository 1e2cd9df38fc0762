#include "backup/backup_archive.h"
#include "backup/json_stream.h"
#include "backup_test_data.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <optional>
#include <random>

namespace quarrydex {
namespace {

using json = nlohmann::json;

// Writes down every event, so two parsers can be compared event for event.
class Recorder final : public nlohmann::json_sax<json> {
public:
    std::vector<std::string> events;
    bool failed = false;

    bool null() override { return add("null"); }
    bool boolean(bool value) override { return add(value ? "true" : "false"); }
    bool number_integer(number_integer_t value) override {
        return add("int " + std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return add("unsigned " + std::to_string(value));
    }
    bool number_float(number_float_t value, const string_t&) override {
        char text[64];
        std::snprintf(text, sizeof text, "float %.17g", value);
        return add(text);
    }
    bool string(string_t& value) override { return add("string " + value); }
    bool binary(binary_t&) override { return add("binary"); }
    bool start_object(std::size_t) override { return add("{"); }
    bool key(string_t& value) override { return add("key " + value); }
    bool end_object() override { return add("}"); }
    bool start_array(std::size_t) override { return add("["); }
    bool end_array() override { return add("]"); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        failed = true;
        return false;
    }

private:
    bool add(std::string event) {
        events.push_back(std::move(event));
        return true;
    }
};

// Hands the input over in pieces of a fixed size, so every token gets split somewhere.
class PieceSource final : public JsonSource {
public:
    PieceSource(std::string_view bytes, std::size_t size) : rest_(bytes), size_(size) {}
    std::string_view next() override {
        std::string_view piece = rest_.substr(0, size_);
        rest_.remove_prefix(piece.size());
        return piece;
    }

private:
    std::string_view rest_;
    std::size_t size_;
};

// The events of a parse, or none when the input is refused.
using Events = std::optional<std::vector<std::string>>;

Events ours(std::string_view text, std::size_t pieceSize = 1 << 20) {
    PieceSource source(text, pieceSize);
    Recorder recorder;
    bool ok = parseJsonStream(source, recorder);
    EXPECT_EQ(ok, !recorder.failed) << text;
    return ok ? Events(recorder.events) : std::nullopt;
}

Events reference(std::string_view text) {
    Recorder recorder;
    return json::sax_parse(text, &recorder) ? Events(recorder.events) : std::nullopt;
}

// Valid inputs at the edges of numbers, escapes, UTF-8 and a byte-order mark, then inputs
// nlohmann refuses; each whole and in pieces of 1 and 3 bytes.
TEST(JsonStream, reports_the_same_events_as_nlohmann_and_refuses_what_it_refuses) {
    const char* inputs[] = {
        " \t\r\n{ \"a\" : [ 1 , -2 , 3.5 , -0 , 0.0 , 1e3 , 1E-3 , -1.5e+10 ] } \n",
        "[true,false,null,\"\",\"x\"]",
        "18446744073709551615",
        "18446744073709551616",
        "-9223372036854775808",
        "-9223372036854775809",
        "[\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0000\\u00e9\\u20AC\\ud83d\\ude00\"]",
        "[\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\"]",
        "\xEF\xBB\xBF{\"bom\":1}",
        "{\"dup\":1,\"dup\":2}",
        "",
        "[1,]",
        "[01]",
        "{}x",
        "[\"unterminated]",
        "[\"tab\there\"]",
        "[\"bad escape \\x\"]",
        "[\"\\u12G4\"]",
        "[\"\\ud83d alone\"]",
        "[\"\xC3\"]",
        "[\"\xED\xA0\x80\"]",
        "[\"\xF4\x90\x80\x80\"]",
        "\xEF\xBB{}",
        "[1 2]",
        "1e400",
    };
    for (const char* input : inputs) {
        for (std::size_t pieceSize : {std::size_t{1}, std::size_t{3}, std::size_t{1} << 20}) {
            EXPECT_EQ(ours(input, pieceSize), reference(input))
                << "input: " << input << " pieces of " << pieceSize;
        }
    }
}

TEST(JsonStream, agrees_with_nlohmann_on_thousands_of_damaged_backups) {
    const std::string original = BackupCodec::encode(test::fullArchive());
    const char interesting[] = {'"', '\\', '{', '}',  '[',    ']',    ',',    ':',    '0', '-',
                                'e', '.',  ' ', '\n', '\x01', '\x80', '\xC3', '\xFF', 'u', 'n'};
    std::mt19937 random(20261018);
    for (int round = 0; round < 3000; ++round) {
        std::string text = original;
        int edits = 1 + static_cast<int>(random() % 3);
        for (int e = 0; e < edits && !text.empty(); ++e) {
            std::size_t at = random() % text.size();
            switch (random() % 4) {
            case 0:
                text[at] = interesting[random() % sizeof interesting];
                break;
            case 1:
                text.erase(at, 1);
                break;
            case 2:
                text.insert(at, 1, interesting[random() % sizeof interesting]);
                break;
            default:
                text.resize(at);
                break;
            }
        }
        ASSERT_EQ(ours(text, 7), reference(text)) << "round " << round << ": " << text;
    }
}

TEST(JsonStream, nesting_is_limited_so_hostile_input_cannot_exhaust_memory) {
    std::string deepest = std::string(maxJsonDepth, '[') + std::string(maxJsonDepth, ']');
    EXPECT_TRUE(ours(deepest));
    EXPECT_FALSE(ours("[" + deepest + "]"));
}

} // namespace
} // namespace quarrydex
