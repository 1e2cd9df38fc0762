#include "identify/matcher.h"

#include "library/specimen_library.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>

namespace quarrydex {

namespace {

struct LevelInfo {
    std::string_view raw;
    std::string_view title;
    std::string_view explanation;
};

constexpr std::array<LevelInfo, 4> levels{{
    {"strong", "Strong match",
     "Your answers fit this species well and rule out most others. Confirm with an expert "
     "before buying, selling or valuing a specimen."},
    {"likely", "Likely match",
     "This is the best fit so far, but a few close look-alikes remain. Another test will help."},
    {"possible", "Possible match",
     "Several species still fit your answers. Answer the suggested next question to narrow it "
     "down."},
    {"roughGuess", "Rough guess",
     "Based mostly on photo color, which many stones share. Treat this as a starting point, "
     "not an answer."},
}};

const LevelInfo& levelInfo(ConfidenceLevel l) {
    return levels[static_cast<std::size_t>(l)];
}

std::string joinFirstColors(const Specimen& s) {
    std::string out;
    for (std::size_t i = 0; i < s.colors.size() && i < 3; ++i) {
        out += (i ? ", " : "") + s.colors[i];
    }
    return out;
}

// Which options of every question fit one species: bit i of masks[q] is option i.
// Worked out once per species and identification, so scoring and the suggestion
// search test bits instead of matching texts again.
struct FitMasks {
    std::array<std::uint32_t, 8> masks{};

    explicit FitMasks(const Specimen& s) {
        for (Question q : allQuestions()) {
            const auto& opts = options(q);
            std::uint32_t m = 0;
            if (q == Question::color) {
                for (ColorFamily f : families(s)) {
                    m |= 1u << static_cast<unsigned>(f);
                }
            } else {
                for (std::size_t i = 0; i < opts.size(); ++i) {
                    if (opts[i].matches(s)) {
                        m |= 1u << i;
                    }
                }
            }
            masks[static_cast<std::size_t>(q)] = m;
        }
    }
    bool fits(Question q, unsigned option) const {
        return (masks[static_cast<std::size_t>(q)] >> option) & 1u;
    }
};

// The answered option of each question, or -1.
std::array<int, 8> answeredOptions(const Answers& a) {
    std::array<int, 8> out;
    for (Question q : allQuestions()) {
        std::string raw = answerRawValue(q, a);
        int index = -1;
        const auto& opts = options(q);
        for (std::size_t i = 0; i < opts.size(); ++i) {
            if (!raw.empty() && opts[i].rawValue == raw) {
                index = static_cast<int>(i);
            }
        }
        out[static_cast<std::size_t>(q)] = index;
    }
    return out;
}

double scoreFromMasks(const FitMasks& fit, const std::array<int, 8>& answered) {
    double score = 1.0;
    for (Question q : allQuestions()) {
        int option = answered[static_cast<std::size_t>(q)];
        if (option >= 0 && !fit.fits(q, static_cast<unsigned>(option))) {
            score *= mismatchPenalty(q);
        }
    }
    return score;
}

std::optional<Question> suggestFromMasks(const std::array<int, 8>& answered,
                                         const std::vector<FitMasks>& fits,
                                         const std::vector<double>& p) {
    std::optional<Question> best;
    double bestCost = 0;
    std::vector<double> weights(p.size());
    for (Question q : allQuestions()) {
        if (answered[static_cast<std::size_t>(q)] >= 0) {
            continue;
        }
        const double penalty = mismatchPenalty(q);
        double h = 0;
        double totalMass = 0;
        const auto optionCount = static_cast<unsigned>(options(q).size());
        for (unsigned option = 0; option < optionCount; ++option) {
            double mass = 0;
            double w = 0;
            for (std::size_t i = 0; i < p.size(); ++i) {
                bool fit = fits[i].fits(q, option);
                weights[i] = fit ? p[i] : p[i] * penalty;
                if (fit) {
                    mass += p[i];
                }
                w += weights[i];
            }
            if (w > 0 && mass > 0) {
                double entropy = 0;
                for (double wi : weights) {
                    if (wi > 0) {
                        double share = wi / w;
                        entropy -= share * std::log2(share);
                    }
                }
                h += mass * entropy;
            }
            totalMass += mass;
        }
        double cost = totalMass > 0 ? h / totalMass : std::numeric_limits<double>::infinity();
        if (!best || cost < bestCost) {
            best = q;
            bestCost = cost;
        }
    }
    return best;
}

} // namespace

std::string_view rawValue(ConfidenceLevel l) {
    return levelInfo(l).raw;
}
std::string_view title(ConfidenceLevel l) {
    return levelInfo(l).title;
}
std::string_view explanation(ConfidenceLevel l) {
    return levelInfo(l).explanation;
}

std::optional<ConfidenceLevel> confidenceLevelFromRaw(std::string_view raw) {
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (levels[i].raw == raw) {
            return static_cast<ConfidenceLevel>(i);
        }
    }
    return std::nullopt;
}

int Candidate::displayPercent() const {
    return static_cast<int>(std::round(std::min(confidence, 0.95) * 100));
}

double Matcher::distance(const RGB& a, const RGB& b) {
    double m = (a.r + b.r) / 2;
    double dr = a.r - b.r, dg = a.g - b.g, db = a.b - b.b;
    double d = std::sqrt((2 + m) * dr * dr + 4 * dg * dg + (3 - m) * db * db) / 3;
    return std::min(d, 1.0);
}

double Matcher::colorSimilarity(const RGB& color, const Specimen& specimen) {
    double nearest = std::numeric_limits<double>::infinity();
    for (const auto& hex : specimen.colorHex) {
        if (auto ref = RGB::fromHex(hex)) {
            nearest = std::min(nearest, distance(color, *ref));
        }
    }
    if (std::isinf(nearest)) {
        return 0.5; // no usable reference colour: neutral
    }
    return std::max(1 - nearest, 0.05);
}

AnswerScore Matcher::answerScore(const Specimen& s, const Answers& a) {
    AnswerScore out;
    auto judge = [&](Question q, bool fit, std::string fitLine, std::string misfitLine) {
        if (fit) {
            out.fits.push_back(std::move(fitLine));
        } else {
            out.score *= mismatchPenalty(q);
            out.misfits.push_back(std::move(misfitLine));
        }
    };
    const std::string luster = lowercased(s.luster);
    const std::string streak = lowercased(s.streak);
    const std::string sg = s.specificGravity.value_or("?");
    if (a.color) {
        judge(Question::color, matches(*a.color, s), "Color fits", "Usually " + joinFirstColors(s));
    }
    if (a.luster) {
        judge(Question::luster, matches(*a.luster, s), "Luster fits (" + luster + ")",
              "Luster is usually " + luster);
    }
    if (a.habit) {
        judge(Question::habit, matches(*a.habit, s), "Shape fits", "Shape is usually different");
    }
    if (a.scratch) {
        judge(Question::scratch, matches(*a.scratch, s), "Hardness fits (" + s.hardnessText() + ")",
              "Hardness is " + s.hardnessText());
    }
    if (a.streak) {
        judge(Question::streak, matches(*a.streak, s), "Streak fits (" + streak + ")",
              "Streak is usually " + streak);
    }
    if (a.heft) {
        judge(Question::heft, matches(*a.heft, s), "Weight fits (SG " + sg + ")",
              "Specific gravity is " + sg);
    }
    if (a.magnet) {
        judge(Question::magnet, matches(*a.magnet, s),
              s.magnetic ? "Magnetic, as expected" : "Not magnetic, as expected",
              s.magnetic ? "Should attract a magnet" : "Shouldn't attract a magnet");
    }
    if (a.fizz) {
        judge(Question::fizz, matches(*a.fizz, s),
              s.fizzes ? "Fizzes, as carbonates do" : "No fizz, as expected",
              s.fizzes ? "Usually fizzes in acid" : "Shouldn't fizz in vinegar");
    }
    return out;
}

ConfidenceLevel Matcher::level(double top, double second, int answered) {
    if (answered > 2 && top >= 0.55 && top * 0.5 >= second) {
        return ConfidenceLevel::strong;
    }
    if (answered >= 2 && top >= 0.35) {
        return ConfidenceLevel::likely;
    }
    if (answered == 0) {
        return ConfidenceLevel::roughGuess;
    }
    return ConfidenceLevel::possible;
}

IdentifyResult Matcher::identify(std::optional<RGB> color, const Answers& answers,
                                 const std::vector<Specimen>& specimens, int limit) const {
    if (limit < 0) {
        assert(false && "identify: negative limit");
        std::abort();
    }
    IdentifyResult result;
    if (specimens.empty()) {
        return result;
    }
    const std::size_t n = specimens.size();
    const auto answered = answeredOptions(answers);
    std::vector<FitMasks> fits;
    fits.reserve(n);
    std::vector<double> scores(n), weights(n);
    double maxScore = 0;
    for (std::size_t i = 0; i < n; ++i) {
        fits.emplace_back(specimens[i]);
        scores[i] = scoreFromMasks(fits[i], answered);
        maxScore = std::max(maxScore, scores[i]);
        weights[i] = scores[i];
        if (color) {
            weights[i] *= std::pow(colorSimilarity(*color, specimens[i]), colorWeight);
        }
    }
    const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
    std::vector<double> confidence(n);
    for (std::size_t i = 0; i < n; ++i) {
        confidence[i] = total > 0 ? weights[i] / total : 1.0 / static_cast<double>(n);
    }

    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        if (confidence[a] != confidence[b]) {
            return confidence[a] > confidence[b];
        }
        return specimens[a].name < specimens[b].name;
    });

    // Ids must be unique: the suggestion weighs species by id.
    std::unordered_map<std::string, double> byID;
    byID.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        if (!byID.emplace(specimens[i].id, confidence[i]).second) {
            assert(false && "identify: duplicate species id");
            std::abort();
        }
    }

    const double top = confidence[order[0]];
    const double second = n > 1 ? confidence[order[1]] : 0;
    const std::size_t shown = std::min(static_cast<std::size_t>(limit), n);
    for (std::size_t k = 0; k < shown; ++k) {
        const Specimen& s = specimens[order[k]];
        AnswerScore lines = answerScore(s, answers);
        result.candidates.push_back(
            {s, confidence[order[k]], std::move(lines.fits), std::move(lines.misfits)});
    }
    result.level = level(top, second, answers.answeredCount());
    result.evidence = answers.answeredCount();
    result.usedPhotoColor = color.has_value();
    result.nothingFitsWell = !answers.isEmpty() && maxScore < 0.5;
    result.suggestedNext = suggestFromMasks(answered, fits, confidence);
    return result;
}

std::optional<Question>
Matcher::suggestNext(const Answers& answers, const std::vector<Specimen>& specimens,
                     const std::unordered_map<std::string, double>& probabilities) {
    std::vector<FitMasks> fits;
    std::vector<double> p;
    fits.reserve(specimens.size());
    for (const auto& s : specimens) {
        fits.emplace_back(s);
        auto it = probabilities.find(s.id);
        p.push_back(it == probabilities.end() ? 0.0 : it->second);
    }
    return suggestFromMasks(answeredOptions(answers), fits, p);
}

} // namespace quarrydex
