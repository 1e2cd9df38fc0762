#pragma once
// The eight guided questions: their texts, icons, the penalty a misfit costs, and the
// options the suggestion algorithm weighs.

#include "identify/answers.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

// Declaration order is the order questions are scored, suggested and shown.
enum class Question { color, luster, habit, scratch, streak, heft, magnet, fizz };

struct QuestionOption {
    std::string_view title;
    std::string_view rawValue;
    std::function<bool(const Specimen&)> matches;
};

const std::array<Question, 8>& allQuestions();
std::string_view rawValue(Question q);
std::optional<Question> questionFromRaw(std::string_view raw);
std::string_view title(Question q);
std::string_view symbol(Question q);
std::string_view hint(Question q);
// The factor a species' score is multiplied by when the answer does not fit it.
double mismatchPenalty(Question q);
// The answer cases of the question in declaration order, each with its fit test.
const std::vector<QuestionOption>& options(Question q);
bool isAnswered(Question q, const Answers& answers);

// The answer given to a question as its raw value ("" when not answered), and setting
// it from one ("" clears it). Unknown raw values are refused with false.
std::string answerRawValue(Question q, const Answers& answers);
bool setAnswerRawValue(Question q, Answers& answers, std::string_view raw);

} // namespace quarrydex
