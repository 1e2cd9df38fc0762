#pragma once
// Record identity: a UUID kept as its canonical upper-case 8-4-4-4-12 text, the form
// every file of the program stores.

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

class Uuid {
public:
    // A fresh random (version 4) UUID.
    static Uuid random();
    // Accepts the 8-4-4-4-12 hexadecimal form in either case; anything else is none.
    static std::optional<Uuid> parse(std::string_view text);

    const std::string& text() const { return text_; }
    auto operator<=>(const Uuid&) const = default;

private:
    explicit Uuid(std::string text) : text_(std::move(text)) {}
    std::string text_;
};

} // namespace quarrydex

template <> struct std::hash<quarrydex::Uuid> {
    std::size_t operator()(const quarrydex::Uuid& u) const noexcept {
        return std::hash<std::string>{}(u.text());
    }
};
