#pragma once
// How a collection piece was obtained. Records keep the raw value as text (see
// CollectionEntry::acquisition), so a word this version does not know survives a load and
// a save; Acquisition itself only ever holds one of the four known cases.

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

class Acquisition {
public:
    // In picker order.
    enum Value { found, bought, gift, traded };

    constexpr Acquisition(Value value) : value_(value) {}

    // The four cases in picker order.
    static const std::array<Acquisition, 4>& allCases();
    // None for anything but the exact raw values ("found", "bought", "gift", "traded").
    static std::optional<Acquisition> fromRaw(std::string_view raw);

    constexpr Value value() const { return value_; }
    // The stored text; also the identity used by pickers.
    std::string_view rawValue() const;
    std::string_view id() const { return rawValue(); }
    // The text shown: the raw value with its first letter capitalised.
    std::string title() const;

    friend constexpr bool operator==(Acquisition, Acquisition) = default;

private:
    Value value_;
};

} // namespace quarrydex
