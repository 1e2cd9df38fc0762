#include "identify/answers.h"

#include "library/specimen_library.h"

#include <algorithm>

namespace quarrydex {

namespace {
using W = std::string_view;

// Keyword lists, exactly as the questions define them.
constexpr W kWhite[] = {"white", "colorless", "milky", "clear"};
constexpr W kGray[] = {"gray", "grey", "silver"};
constexpr W kBlack[] = {"black"};
constexpr W kRed[] = {"red", "scarlet", "crimson"};
constexpr W kPink[] = {"pink", "rose", "peach"};
constexpr W kOrange[] = {"orange", "copper", "peach"};
constexpr W kBrown[] = {"brown", "tan", "bronze", "rust"};
constexpr W kYellow[] = {"yellow", "gold", "brass", "honey", "lemon"};
constexpr W kGreen[] = {"green", "olive", "teal", "pistachio"};
constexpr W kBlue[] = {"blue", "cyan", "turquoise", "teal", "sky"};
constexpr W kPurple[] = {"purple", "violet", "lilac", "lavender"};
constexpr W kMulti[] = {"banded", "mixed", "iridescent", "salt and pepper", "with", "speckled"};

constexpr AnswerCase<ColorFamily> colorCases[] = {
    {ColorFamily::white, "white", "White or colorless", kWhite},
    {ColorFamily::gray, "gray", "Gray or silver", kGray},
    {ColorFamily::black, "black", "Black", kBlack},
    {ColorFamily::red, "red", "Red", kRed},
    {ColorFamily::pink, "pink", "Pink", kPink},
    {ColorFamily::orange, "orange", "Orange", kOrange},
    {ColorFamily::brown, "brown", "Brown or tan", kBrown},
    {ColorFamily::yellow, "yellow", "Yellow or gold", kYellow},
    {ColorFamily::green, "green", "Green", kGreen},
    {ColorFamily::blue, "blue", "Blue", kBlue},
    {ColorFamily::purple, "purple", "Purple or violet", kPurple},
    {ColorFamily::multicolor, "multicolor", "Banded, mixed or speckled", kMulti},
};

constexpr W lMetallic[] = {"metallic"};
constexpr W lGlassy[] = {"vitreous", "glassy", "glossy", "granular", "sugary"};
constexpr W lBrilliant[] = {"adamantine"};
constexpr W lPearly[] = {"pearly"};
constexpr W lSilky[] = {"silky"};
constexpr W lWaxy[] = {"waxy", "greasy", "resinous", "velvety"};
constexpr W lDull[] = {"dull", "earthy", "gritty", "granular"};
constexpr W lGlittery[] = {"glittering", "micaceous"};

constexpr AnswerCase<LusterAnswer> lusterCases[] = {
    {LusterAnswer::metallic, "metallic", "Metallic, like metal", lMetallic},
    {LusterAnswer::glassy, "glassy", "Glassy, like a window", lGlassy},
    {LusterAnswer::brilliant, "brilliant", "Brilliant, diamond-like sparkle", lBrilliant},
    {LusterAnswer::pearly, "pearly", "Pearly, like the inside of a shell", lPearly},
    {LusterAnswer::silky, "silky", "Silky, with a moving sheen", lSilky},
    {LusterAnswer::waxy, "waxy", "Waxy, greasy or resin-like", lWaxy},
    {LusterAnswer::dull, "dull", "Dull or earthy", lDull},
    {LusterAnswer::glittery, "glittery", "Glittery flakes", lGlittery},
};

constexpr AnswerCase<ScratchAnswer> scratchCases[] = {
    {ScratchAnswer::fingernail, "fingernail", "A fingernail scratches it"},
    {ScratchAnswer::coin, "coin", "A copper coin scratches it, a fingernail doesn't"},
    {ScratchAnswer::steel, "steel", "A steel knife scratches it, a coin doesn't"},
    {ScratchAnswer::scratchesGlass, "scratchesGlass", "Nothing scratches it; it scratches glass"},
};

constexpr W sWhite[] = {"white", "colorless"};
constexpr W sGray[] = {"gray", "grey", "lead", "silver"};
constexpr W sBlack[] = {"black"};
constexpr W sRed[] = {"red", "reddish", "scarlet"};
constexpr W sYellow[] = {"yellow", "brown", "golden"};
constexpr W sGreen[] = {"green"};
constexpr W sBlue[] = {"blue"};

constexpr AnswerCase<StreakAnswer> streakCases[] = {
    {StreakAnswer::white, "white", "White or colorless", sWhite},
    {StreakAnswer::gray, "gray", "Gray", sGray},
    {StreakAnswer::black, "black", "Black or greenish-black", sBlack},
    {StreakAnswer::redBrown, "redBrown", "Red or red-brown", sRed},
    {StreakAnswer::yellowBrown, "yellowBrown", "Yellow, gold or brown", sYellow},
    {StreakAnswer::green, "green", "Green", sGreen},
    {StreakAnswer::blue, "blue", "Blue", sBlue},
    {StreakAnswer::none, "none", "No streak (it scratches the tile)"},
};

constexpr W hPrisms[] = {"prismatic"};
constexpr W hCubes[] = {"cubic"};
constexpr W hPointed[] = {"octahedral", "dodecahedral"};
constexpr W hRhombs[] = {"rhombohedral"};
constexpr W hPlates[] = {"tabular", "bladed"};
constexpr W hSheets[] = {"sheets"};
constexpr W hBands[] = {"banded", "layered"};
constexpr W hGlass[] = {"glassy"};
constexpr W hGrains[] = {"granular"};
constexpr W hHoles[] = {"vesicular"};
constexpr W hFibers[] = {"fibrous"};
constexpr W hBubbly[] = {"botryoidal"};
constexpr W hFossil[] = {"fossil"};
constexpr W hMetal[] = {"nugget", "dendritic"};
constexpr W hNoShape[] = {"massive"};

constexpr AnswerCase<HabitAnswer> habitCases[] = {
    {HabitAnswer::prisms, "prisms", "Long six-sided crystals or columns", hPrisms},
    {HabitAnswer::cubes, "cubes", "Cubes or square corners", hCubes},
    {HabitAnswer::pointed, "pointed", "Double-pointed or ball-like crystals", hPointed},
    {HabitAnswer::rhombs, "rhombs", "Slanted boxes (rhombs)", hRhombs},
    {HabitAnswer::plates, "plates", "Flat plates or knife-like blades", hPlates},
    {HabitAnswer::sheets, "sheets", "Thin sheets that peel off", hSheets},
    {HabitAnswer::bands, "bands", "Bands, stripes or layers", hBands},
    {HabitAnswer::glass, "glass", "Smooth glass, no crystals", hGlass},
    {HabitAnswer::grains, "grains", "Visible grains or speckles", hGrains},
    {HabitAnswer::holes, "holes", "Full of bubbles or holes", hHoles},
    {HabitAnswer::fibers, "fibers", "Fibers or a silky sheen", hFibers},
    {HabitAnswer::bubbly, "bubbly", "Rounded, bubbly crust", hBubbly},
    {HabitAnswer::fossil, "fossil", "Shape of a shell, bone, tooth or wood", hFossil},
    {HabitAnswer::metalLump, "metalLump", "Metal nugget, wires or branches", hMetal},
    {HabitAnswer::noShape, "noShape", "A lump with no clear shape", hNoShape},
};

constexpr AnswerCase<HeftAnswer> heftCases[] = {
    {HeftAnswer::light, "light", "Light, like plastic or it floats"},
    {HeftAnswer::normal, "normal", "About like an ordinary rock"},
    {HeftAnswer::heavy, "heavy", "Surprisingly heavy"},
};

constexpr AnswerCase<MagnetAnswer> magnetCases[] = {
    {MagnetAnswer::attracts, "attracts", "A magnet sticks or pulls"},
    {MagnetAnswer::none, "none", "No pull at all"},
};

constexpr AnswerCase<FizzAnswer> fizzCases[] = {
    {FizzAnswer::fizzes, "fizzes", "It fizzes or bubbles"},
    {FizzAnswer::none, "none", "No fizzing"},
};

bool containsAny(const std::string& lowerText, std::span<const std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view w) { return lowerText.find(w) != std::string::npos; });
}

} // namespace

template <> std::span<const AnswerCase<ColorFamily>> allCases<ColorFamily>() {
    return colorCases;
}
template <> std::span<const AnswerCase<LusterAnswer>> allCases<LusterAnswer>() {
    return lusterCases;
}
template <> std::span<const AnswerCase<ScratchAnswer>> allCases<ScratchAnswer>() {
    return scratchCases;
}
template <> std::span<const AnswerCase<StreakAnswer>> allCases<StreakAnswer>() {
    return streakCases;
}
template <> std::span<const AnswerCase<HabitAnswer>> allCases<HabitAnswer>() {
    return habitCases;
}
template <> std::span<const AnswerCase<HeftAnswer>> allCases<HeftAnswer>() {
    return heftCases;
}
template <> std::span<const AnswerCase<MagnetAnswer>> allCases<MagnetAnswer>() {
    return magnetCases;
}
template <> std::span<const AnswerCase<FizzAnswer>> allCases<FizzAnswer>() {
    return fizzCases;
}

std::span<const std::string_view> keywords(ColorFamily f) {
    return answerCase(f).words;
}
std::span<const std::string_view> keywords(LusterAnswer l) {
    return answerCase(l).words;
}
std::span<const std::string_view> keywords(StreakAnswer s) {
    return answerCase(s).words;
}
std::span<const std::string_view> tags(HabitAnswer h) {
    return answerCase(h).words;
}

const std::set<std::string, std::less<>>& allHabitTags() {
    static const std::set<std::string, std::less<>> tags = [] {
        std::set<std::string, std::less<>> out;
        for (const auto& c : habitCases) {
            out.insert(c.words.begin(), c.words.end());
        }
        return out;
    }();
    return tags;
}

std::pair<double, double> hardnessRange(ScratchAnswer s) {
    switch (s) {
    case ScratchAnswer::fingernail:
        return {0, 2.5};
    case ScratchAnswer::coin:
        return {2.5, 3.5};
    case ScratchAnswer::steel:
        return {3.5, 5.5};
    case ScratchAnswer::scratchesGlass:
        break;
    }
    return {5.5, 10};
}

std::set<ColorFamily> families(const Specimen& specimen) {
    std::set<ColorFamily> out;
    for (const auto& color : specimen.colors) {
        const std::string lower = lowercased(color);
        for (const auto& c : colorCases) {
            if (containsAny(lower, c.words)) {
                out.insert(c.value);
            }
        }
    }
    return out;
}

bool matches(ColorFamily answer, const Specimen& s) {
    return families(s).contains(answer);
}

bool matches(LusterAnswer answer, const Specimen& s) {
    return containsAny(lowercased(s.luster), keywords(answer));
}

bool matches(ScratchAnswer answer, const Specimen& s) {
    auto [lo, hi] = hardnessRange(answer);
    return s.hardnessMax >= lo && s.hardnessMin <= hi;
}

bool matches(StreakAnswer answer, const Specimen& s) {
    const std::string streak = lowercased(s.streak);
    if (answer == StreakAnswer::none) {
        // A stone harder than the unglazed tile leaves no streak whatever its powder colour.
        return streak.find("none") != std::string::npos || s.hardnessMax >= 6.5;
    }
    return containsAny(streak, keywords(answer));
}

bool matches(HabitAnswer answer, const Specimen& s) {
    auto t = tags(answer);
    return std::any_of(s.habits.begin(), s.habits.end(), [&](const std::string& habit) {
        return std::find(t.begin(), t.end(), habit) != t.end();
    });
}

bool matches(HeftAnswer answer, const Specimen& s) {
    auto range = s.gravityRange();
    if (!range) {
        return true;
    }
    auto [lo, hi] = *range;
    switch (answer) {
    case HeftAnswer::light:
        return lo < 2.2;
    case HeftAnswer::normal:
        return lo <= 4.0 && hi >= 2.2;
    case HeftAnswer::heavy:
        break;
    }
    return hi > 4.0;
}

bool matches(MagnetAnswer answer, const Specimen& s) {
    return (answer == MagnetAnswer::attracts) == s.magnetic;
}

bool matches(FizzAnswer answer, const Specimen& s) {
    return (answer == FizzAnswer::fizzes) == s.fizzes;
}

int Answers::answeredCount() const {
    return int(color.has_value()) + int(luster.has_value()) + int(scratch.has_value()) +
           int(streak.has_value()) + int(habit.has_value()) + int(magnet.has_value()) +
           int(fizz.has_value()) + int(heft.has_value());
}

std::vector<std::string> Answers::summary() const {
    std::vector<std::string> lines;
    auto line = [&](const char* label, const auto& answer) {
        if (answer) {
            lines.push_back(label + std::string(title(*answer)));
        }
    };
    line("Color: ", color);
    line("Luster: ", luster);
    line("Scratch: ", scratch);
    line("Streak: ", streak);
    line("Shape: ", habit);
    line("Magnet: ", magnet);
    line("Vinegar: ", fizz);
    line("Weight: ", heft);
    return lines;
}

} // namespace quarrydex
