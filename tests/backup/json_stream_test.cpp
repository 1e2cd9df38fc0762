#include "backup/backup_archive.h"
#include "backup/json_stream.h"
#include "backup_test_data.h"

#include <cstdio>
#include <gtest/gtest.h>
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

struct Outcome {
    bool ok;
    std::vector<std::string> events;
};

Outcome ours(std::string_view text, std::size_t pieceSize = 1 << 20) {
    PieceSource source(text, pieceSize);
    Recorder recorder;
    bool ok = parseJsonStream(source, recorder);
    EXPECT_EQ(ok, !recorder.failed) << text;
    return {ok, recorder.events};
}

Outcome reference(std::string_view text) {
    Recorder recorder;
    bool ok = json::sax_parse(text, &recorder);
    return {ok, recorder.events};
}

void expectSameAsReference(std::string_view text) {
    Outcome expected = reference(text);
    for (std::size_t pieceSize : {std::size_t{1}, std::size_t{3}, std::size_t{1} << 20}) {
        Outcome actual = ours(text, pieceSize);
        ASSERT_EQ(actual.ok, expected.ok) << "input: " << text << " pieces of " << pieceSize;
        if (expected.ok) {
            EXPECT_EQ(actual.events, expected.events) << text;
        }
    }
}

TEST(JsonStream, reports_the_same_events_as_nlohmann_for_valid_json) {
    const char* inputs[] = {
        "{}",
        "[]",
        " \t\r\n{ \"a\" : [ 1 , -2 , 3.5 , -0 , 0.0 , 1e3 , 1E-3 , -1.5e+10 ] } \n",
        "[true,false,null,\"\",\"x\"]",
        "\"just a string\"",
        "42",
        "18446744073709551615",
        "18446744073709551616",
        "-9223372036854775808",
        "-9223372036854775809",
        "1e-400",
        "99999999999999999999",
        "[\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0000\\u00e9\\u20AC\\ud83d\\ude00\"]",
        "[\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\"]",
        "\xEF\xBB\xBF{\"bom\":1}",
        "{\"a\":{\"b\":{\"c\":[[],[{}]]}}}",
        "{\"dup\":1,\"dup\":2}",
    };
    for (const char* input : inputs) {
        ASSERT_TRUE(reference(input).ok) << input;
        expectSameAsReference(input);
    }
}

TEST(JsonStream, refuses_what_nlohmann_refuses) {
    const char* inputs[] = {
        "",
        "   ",
        "{",
        "[1,]",
        "{\"a\":1,}",
        "{\"a\" 1}",
        "{a:1}",
        "[01]",
        "[-]",
        "[1.]",
        "[.5]",
        "[+1]",
        "[1e]",
        "[tru]",
        "[nul]",
        "[True]",
        "{} {}",
        "{}x",
        "[\"unterminated]",
        "[\"tab\there\"]",
        "[\"bad escape \\x\"]",
        "[\"\\u12G4\"]",
        "[\"\\ud83d alone\"]",
        "[\"\\ude00 low first\"]",
        "[\"\\ud83d\\u0041\"]",
        "[\"\xC3\"]",
        "[\"\xC0\x80\"]",
        "[\"\xED\xA0\x80\"]",
        "[\"\xF4\x90\x80\x80\"]",
        "[\"\xFF\"]",
        "\xEF\xBB{}",
        "[1 2]",
        "{\"a\":1 \"b\":2}",
        "// comment\n{}",
        "[NaN]",
        "1e400",
        "[-1e400]",
        "[Infinity]",
    };
    for (const char* input : inputs) {
        ASSERT_FALSE(reference(input).ok) << input;
        expectSameAsReference(input);
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
        Outcome expected = reference(text);
        Outcome actual = ours(text, 7);
        ASSERT_EQ(actual.ok, expected.ok) << "round " << round << ": " << text;
        if (expected.ok) {
            ASSERT_EQ(actual.events, expected.events) << "round " << round;
        }
    }
}

TEST(JsonStream, nesting_is_limited_so_hostile_input_cannot_exhaust_memory) {
    std::string deepest = std::string(maxJsonDepth, '[') + std::string(maxJsonDepth, ']');
    EXPECT_TRUE(ours(deepest).ok);
    std::string tooDeep = "[" + deepest + "]";
    EXPECT_FALSE(ours(tooDeep).ok);
}

TEST(JsonStream, a_file_that_cannot_be_opened_ends_at_once_and_keeps_the_reason) {
    JsonFileSource source("/nonexistent/folder/backup.json");
    EXPECT_TRUE(source.next().empty());
    EXPECT_EQ(source.error(), ENOENT);
}

} // namespace
} // namespace quarrydex
