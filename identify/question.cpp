#include "identify/question.h"

namespace quarrydex {

namespace {

struct QuestionInfo {
    Question question;
    std::string_view raw;
    std::string_view title;
    std::string_view symbol;
    std::string_view hint;
    double penalty;
};

constexpr std::array<QuestionInfo, 8> questionInfo{{
    {Question::color, "color", "Main color", "paintpalette",
     "Look at a fresh, clean surface in daylight. Wetting it shows the true color.", 0.3},
    {Question::luster, "luster", "Luster (how it shines)", "sun.max",
     "Tilt it under a lamp and compare the shine to metal, glass, pearl or wax.", 0.2},
    {Question::habit, "habit", "Shape and texture", "cube.transparent",
     "What does the whole piece look like? Crystal shape matters more than size.", 0.35},
    {Question::scratch, "scratch", "Scratch test", "hand.point.up.left",
     "Try a fingernail, then a copper coin, then a steel knife, then a glass bottle. Press "
     "firmly; rub off any powder to check it's a real groove.",
     0.1},
    {Question::streak, "streak", "Streak test", "scribble",
     "Rub it hard on the back of an unglazed white tile and look at the powder color.", 0.15},
    {Question::heft, "heft", "Weight in your hand", "scalemass",
     "Compare it with a normal stone or a piece of quartz the same size.", 0.3},
    {Question::magnet, "magnet", "Magnet test", "bolt.horizontal",
     "Hold a strong fridge magnet against it, or hang the stone on a thread near the magnet.", 0.1},
    {Question::fizz, "fizz", "Vinegar test", "drop",
     "Put a drop of vinegar on a hidden spot and watch closely with a magnifier. Rinse "
     "afterward.",
     0.15},
}};

const QuestionInfo& infoOf(Question q) {
    return questionInfo[static_cast<std::size_t>(q)];
}

template <class Answer> std::vector<QuestionOption> optionsOf() {
    std::vector<QuestionOption> out;
    for (const auto& c : allCases<Answer>()) {
        Answer value = c.value;
        out.push_back(
            {c.title, c.rawValue, [value](const Specimen& s) { return matches(value, s); }});
    }
    return out;
}

// Applies `f` to the Answers field that belongs to the question.
template <class A, class F> decltype(auto) withField(Question q, A& a, F&& f) {
    switch (q) {
    case Question::color:
        return f(a.color);
    case Question::luster:
        return f(a.luster);
    case Question::habit:
        return f(a.habit);
    case Question::scratch:
        return f(a.scratch);
    case Question::streak:
        return f(a.streak);
    case Question::heft:
        return f(a.heft);
    case Question::magnet:
        return f(a.magnet);
    case Question::fizz:
        break;
    }
    return f(a.fizz);
}

} // namespace

const std::array<Question, 8>& allQuestions() {
    static constexpr std::array<Question, 8> all{
        Question::color,  Question::luster, Question::habit,  Question::scratch,
        Question::streak, Question::heft,   Question::magnet, Question::fizz};
    return all;
}

std::string_view rawValue(Question q) {
    return infoOf(q).raw;
}
std::string_view title(Question q) {
    return infoOf(q).title;
}
std::string_view symbol(Question q) {
    return infoOf(q).symbol;
}
std::string_view hint(Question q) {
    return infoOf(q).hint;
}
double mismatchPenalty(Question q) {
    return infoOf(q).penalty;
}

std::optional<Question> questionFromRaw(std::string_view raw) {
    for (const auto& i : questionInfo) {
        if (i.raw == raw) {
            return i.question;
        }
    }
    return std::nullopt;
}

const std::vector<QuestionOption>& options(Question q) {
    static const std::array<std::vector<QuestionOption>, 8> all{
        optionsOf<ColorFamily>(),   optionsOf<LusterAnswer>(), optionsOf<HabitAnswer>(),
        optionsOf<ScratchAnswer>(), optionsOf<StreakAnswer>(), optionsOf<HeftAnswer>(),
        optionsOf<MagnetAnswer>(),  optionsOf<FizzAnswer>()};
    return all[static_cast<std::size_t>(q)];
}

bool isAnswered(Question q, const Answers& answers) {
    return withField(q, answers, [](const auto& field) { return field.has_value(); });
}

std::string answerRawValue(Question q, const Answers& answers) {
    return withField(q, answers, [](const auto& field) {
        return field ? std::string(rawValue(*field)) : std::string();
    });
}

bool setAnswerRawValue(Question q, Answers& answers, std::string_view raw) {
    return withField(q, answers, [raw](auto& field) {
        using Answer = typename std::remove_cvref_t<decltype(field)>::value_type;
        if (raw.empty()) {
            field.reset();
            return true;
        }
        auto value = answerFromRaw<Answer>(raw);
        if (!value) {
            return false;
        }
        field = *value;
        return true;
    });
}

} // namespace quarrydex
