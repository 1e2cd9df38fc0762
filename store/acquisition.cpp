#include "store/acquisition.h"

namespace quarrydex {

const std::array<Acquisition, 4>& Acquisition::allCases() {
    static const std::array<Acquisition, 4> cases{found, bought, gift, traded};
    return cases;
}

std::optional<Acquisition> Acquisition::fromRaw(std::string_view raw) {
    for (Acquisition a : allCases()) {
        if (a.rawValue() == raw) {
            return a;
        }
    }
    return std::nullopt;
}

std::string_view Acquisition::rawValue() const {
    switch (value_) {
    case found:
        return "found";
    case bought:
        return "bought";
    case gift:
        return "gift";
    case traded:
        return "traded";
    }
    return "found"; // not reached: value_ is always one of the cases
}

std::string Acquisition::title() const {
    std::string text(rawValue());
    text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

} // namespace quarrydex
