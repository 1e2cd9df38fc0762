#include "selftest/library_checks.h"

#include "identify/matcher.h"
#include "identify/rgb.h"

#include <algorithm>
#include <set>

namespace quarrydex {

namespace {

std::string join(const std::vector<std::string>& items, std::string_view separator) {
    std::string out;
    for (std::size_t i = 0; i < items.size(); ++i) {
        out += (i ? std::string(separator) : "") + items[i];
    }
    return out;
}

bool contains(std::string_view text, std::string_view word) {
    return lowercased(text).find(word) != std::string::npos;
}

// Month names in a birthstone text such as "June, November" or "June and November".
std::vector<std::string> monthWords(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    auto flush = [&] {
        if (!word.empty() && word != "and" && word != "or") {
            words.push_back(word);
        }
        word.clear();
    };
    for (char c : text) {
        if (c == ' ' || c == ',' || c == '/' || c == ';') {
            flush();
        } else {
            word += c;
        }
    }
    flush();
    return words;
}

template <class Answer> bool someAnswerAccepts(const Specimen& s) {
    const auto cases = allCases<Answer>();
    return std::any_of(cases.begin(), cases.end(),
                       [&](const auto& c) { return matches(c.value, s); });
}

} // namespace

const std::array<std::string_view, 12>& LibraryChecks::months() {
    static constexpr std::array<std::string_view, 12> names{
        "January", "February", "March",     "April",   "May",      "June",
        "July",    "August",   "September", "October", "November", "December"};
    return names;
}

std::vector<std::string> LibraryChecks::problems(const Specimen& s) {
    std::vector<std::string> labels;
    if (s.id.empty() || s.id != lowercased(s.id) || s.id.find(' ') != std::string::npos) {
        labels.push_back("bad id");
    }
    if (s.name.empty() || s.group.empty()) {
        labels.push_back("name/group");
    }
    auto length = [](const std::string& text) { // in characters, not bytes
        return std::count_if(text.begin(), text.end(),
                             [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    };
    if (length(s.summary) < 21 || length(s.history) < 41 || length(s.uses) < 6 ||
        length(s.care) < 6) {
        labels.push_back("text fields too short");
    }
    if (s.luster.empty() || s.streak.empty()) {
        labels.push_back("luster/streak empty");
    }
    if (!(1.0 <= s.hardnessMin && s.hardnessMin <= s.hardnessMax && s.hardnessMax <= 10.0)) {
        labels.push_back("hardness range");
    }
    if (s.colors.empty() || s.colorHex.empty() ||
        std::any_of(s.colorHex.begin(), s.colorHex.end(),
                    [](const std::string& h) { return !RGB::fromHex(h); })) {
        labels.push_back("colors/hex");
    }
    if (s.localities.empty()) {
        labels.push_back("localities");
    }
    if (s.lookAlikes.empty() ||
        std::any_of(s.lookAlikes.begin(), s.lookAlikes.end(),
                    [&](const LookAlike& l) { return l.name.empty() || length(l.tip) <= 10; })) {
        labels.push_back("look-alikes");
    }
    if (std::any_of(s.habits.begin(), s.habits.end(),
                    [](const std::string& h) { return !allHabitTags().contains(h); })) {
        labels.push_back("habit tags " + join(s.habits, ", "));
    }
    if (families(s).empty()) {
        labels.push_back("colors map to no color family " + join(s.colors, ", "));
    }
    if (!someAnswerAccepts<LusterAnswer>(s)) {
        labels.push_back("luster '" + s.luster + "' maps to no answer");
    }
    if (!someAnswerAccepts<StreakAnswer>(s) && !contains(s.streak, "none")) {
        labels.push_back("streak '" + s.streak + "' maps to no answer");
    }
    if (auto range = s.gravityRange(); !range) {
        labels.push_back("specific gravity unparseable");
    } else if (!(range->first > 0.3 && range->second < 25.0) || range->first > range->second) {
        // "below 0.2" would make an empty range: as wrong as one out of bounds.
        labels.push_back("specific gravity out of range");
    }
    if (s.birthstone) {
        for (const auto& month : monthWords(*s.birthstone)) {
            if (std::find(months().begin(), months().end(), month) == months().end()) {
                labels.push_back("birthstone month '" + month + "'");
            }
        }
    }
    std::vector<std::string> out;
    for (const auto& label : labels) {
        out.push_back(s.id + ": " + label);
    }
    return out;
}

std::vector<std::string> LibraryChecks::fizzOffenders(const std::vector<Specimen>& specimens) {
    std::vector<std::string> ids;
    for (const auto& s : specimens) {
        if (!s.fizzes) {
            continue;
        }
        bool carbonate = contains(s.group, "carbonate");
        bool calciteFossil = s.category == SpecimenCategory::fossil &&
                             (contains(s.group, "calcite") || contains(s.summary, "calcite") ||
                              contains(s.formula.value_or(""), "calcite"));
        if (!carbonate && !calciteFossil) {
            ids.push_back(s.id);
        }
    }
    return ids;
}

std::vector<std::string> LibraryChecks::magneticOffenders(const std::vector<Specimen>& specimens) {
    std::vector<std::string> ids;
    for (const auto& s : specimens) {
        bool shouldBe = s.id == "magnetite" || lowercased(s.name) == "magnetite" ||
                        s.category == SpecimenCategory::meteorite;
        if (s.magnetic != shouldBe) {
            ids.push_back(s.id);
        }
    }
    return ids;
}

Answers LibraryChecks::profile(const Specimen& s) {
    Answers a;
    // Colour: the family of the first colour word, else any family the species has.
    const std::string first = s.colors.empty() ? "" : lowercased(s.colors.front());
    for (const auto& c : allCases<ColorFamily>()) {
        if (std::any_of(c.words.begin(), c.words.end(),
                        [&](std::string_view w) { return first.find(w) != std::string::npos; })) {
            a.color = c.value;
            break;
        }
    }
    if (!a.color) {
        auto f = families(s);
        if (!f.empty()) {
            a.color = *f.begin();
        }
    }
    for (const auto& c : allCases<LusterAnswer>()) {
        if (matches(c.value, s)) {
            a.luster = c.value;
            break;
        }
    }
    if (!s.habits.empty()) {
        for (const auto& c : allCases<HabitAnswer>()) {
            if (std::find(c.words.begin(), c.words.end(), s.habits.front()) != c.words.end()) {
                a.habit = c.value;
                break;
            }
        }
    }
    const double middle = (s.hardnessMin + s.hardnessMax) / 2;
    for (const auto& c : allCases<ScratchAnswer>()) {
        auto [lo, hi] = hardnessRange(c.value);
        if (lo <= middle && middle <= hi) {
            a.scratch = c.value;
            break;
        }
    }
    // The textbook streak may be "none" itself: every case is tried.
    for (const auto& c : allCases<StreakAnswer>()) {
        if (matches(c.value, s)) {
            a.streak = c.value;
            break;
        }
    }
    a.magnet = s.magnetic ? MagnetAnswer::attracts : MagnetAnswer::none;
    a.fizz = s.fizzes ? FizzAnswer::fizzes : FizzAnswer::none;
    if (auto range = s.gravityRange()) {
        double mid = (range->first + range->second) / 2;
        a.heft =
            mid < 2.2 ? HeftAnswer::light : (mid > 4.0 ? HeftAnswer::heavy : HeftAnswer::normal);
    } else {
        a.heft = HeftAnswer::normal;
    }
    return a;
}

LibraryChecks::Consistency LibraryChecks::selfConsistency(const SpecimenLibrary& library) {
    Consistency out;
    const auto& all = library.specimens();
    Matcher matcher;
    for (const auto& s : all) {
        IdentifyResult r = matcher.identify(std::nullopt, profile(s), all, 3);
        ++out.total;
        bool top3 = false;
        for (std::size_t i = 0; i < r.candidates.size(); ++i) {
            if (r.candidates[i].specimen.id == s.id) {
                top3 = true;
                out.first += i == 0;
            }
        }
        if (top3) {
            ++out.inTop3;
        } else {
            out.missed.push_back(s.id);
        }
    }
    return out;
}

} // namespace quarrydex
