#pragma once
// The answers a user can give to the guided home tests, and the rule by which each
// answer fits or misfits a library species. Every answer type is a small closed
// enumeration; its raw value is also its stored form.

#include "library/specimen.h"

#include <array>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

enum class ColorFamily {
    white,
    gray,
    black,
    red,
    pink,
    orange,
    brown,
    yellow,
    green,
    blue,
    purple,
    multicolor
};
enum class LusterAnswer { metallic, glassy, brilliant, pearly, silky, waxy, dull, glittery };
enum class ScratchAnswer { fingernail, coin, steel, scratchesGlass };
enum class StreakAnswer { white, gray, black, redBrown, yellowBrown, green, blue, none };
enum class HabitAnswer {
    prisms,
    cubes,
    pointed,
    rhombs,
    plates,
    sheets,
    bands,
    glass,
    grains,
    holes,
    fibers,
    bubbly,
    fossil,
    metalLump,
    noShape
};
enum class HeftAnswer { light, normal, heavy };
enum class MagnetAnswer { attracts, none };
enum class FizzAnswer { fizzes, none };

template <class Answer> struct AnswerCase {
    Answer value;
    std::string_view rawValue;
    std::string_view title;
    // Keywords looked for in the species' text, or habit tags; empty where unused.
    std::span<const std::string_view> words = {};
};

// Every case of an answer type in declaration order (the order shown to the user).
template <class Answer> std::span<const AnswerCase<Answer>> allCases();
template <> std::span<const AnswerCase<ColorFamily>> allCases<ColorFamily>();
template <> std::span<const AnswerCase<LusterAnswer>> allCases<LusterAnswer>();
template <> std::span<const AnswerCase<ScratchAnswer>> allCases<ScratchAnswer>();
template <> std::span<const AnswerCase<StreakAnswer>> allCases<StreakAnswer>();
template <> std::span<const AnswerCase<HabitAnswer>> allCases<HabitAnswer>();
template <> std::span<const AnswerCase<HeftAnswer>> allCases<HeftAnswer>();
template <> std::span<const AnswerCase<MagnetAnswer>> allCases<MagnetAnswer>();
template <> std::span<const AnswerCase<FizzAnswer>> allCases<FizzAnswer>();

template <class Answer> const AnswerCase<Answer>& answerCase(Answer a) {
    return allCases<Answer>()[static_cast<std::size_t>(a)];
}
template <class Answer> std::string_view rawValue(Answer a) {
    return answerCase(a).rawValue;
}
template <class Answer> std::string_view title(Answer a) {
    return answerCase(a).title;
}
template <class Answer> std::optional<Answer> answerFromRaw(std::string_view raw) {
    for (const auto& c : allCases<Answer>()) {
        if (c.rawValue == raw) {
            return c.value;
        }
    }
    return std::nullopt;
}

std::span<const std::string_view> keywords(ColorFamily family);
std::span<const std::string_view> keywords(LusterAnswer luster);
std::span<const std::string_view> keywords(StreakAnswer streak);
std::span<const std::string_view> tags(HabitAnswer habit);
// Every habit tag any habit answer knows: the vocabulary of the library's `habits`.
const std::set<std::string, std::less<>>& allHabitTags();
std::pair<double, double> hardnessRange(ScratchAnswer scratch);

// The colour families a species' colour words fall in.
std::set<ColorFamily> families(const Specimen& specimen);

bool matches(ColorFamily answer, const Specimen& specimen);
bool matches(LusterAnswer answer, const Specimen& specimen);
bool matches(ScratchAnswer answer, const Specimen& specimen);
bool matches(StreakAnswer answer, const Specimen& specimen);
bool matches(HabitAnswer answer, const Specimen& specimen);
bool matches(HeftAnswer answer, const Specimen& specimen);
bool matches(MagnetAnswer answer, const Specimen& specimen);
bool matches(FizzAnswer answer, const Specimen& specimen);

// What the user has said so far; every field optional.
struct Answers {
    std::optional<ColorFamily> color;
    std::optional<LusterAnswer> luster;
    std::optional<ScratchAnswer> scratch;
    std::optional<StreakAnswer> streak;
    std::optional<HabitAnswer> habit;
    std::optional<MagnetAnswer> magnet;
    std::optional<FizzAnswer> fizz;
    std::optional<HeftAnswer> heft;

    bool operator==(const Answers&) const = default;

    int answeredCount() const;
    bool isEmpty() const { return answeredCount() == 0; }
    // "Color: Black", "Magnet: A magnet sticks or pulls", ... in field order.
    std::vector<std::string> summary() const;
};

} // namespace quarrydex
