#pragma once
// A value or a user-facing error message. The core reports every failure this way;
// exceptions from the libraries it uses are caught at its boundary.

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace quarrydex {

struct Error {
    std::string message;
};

// `E` is the error type: Error (a message) by default; a subsystem with errors of its own
// kinds (backups) uses its own type and gets the same interface.
template <class T, class E = Error> class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::move(value)) {}
    Result(E error) : state_(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(state_); }
    bool ok() const { return bool(*this); }

    T& value() & { return std::get<T>(state_); }
    const T& value() const& { return std::get<T>(state_); }
    T&& value() && { return std::get<T>(std::move(state_)); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }

    // With Error: the message of a failed result, empty for a success. With another
    // error type: the error itself, only for a failed result.
    decltype(auto) error() const {
        if constexpr (std::is_same_v<E, Error>) {
            static const std::string none;
            return ok() ? none : std::get<Error>(state_).message;
        } else {
            return static_cast<const E&>(std::get<E>(state_));
        }
    }

    // The error's sentence; empty for a success (handy in test failure messages).
    std::string description() const requires requires(const E& e) { e.description(); }
    { return ok() ? std::string() : error().description(); }

private:
    std::variant<T, E> state_;
};

// Success or an error, for operations that return nothing.
class [[nodiscard]] Status {
public:
    Status() = default;
    Status(Error error) : error_(std::move(error.message)) {}

    static Status success() { return {}; }
    explicit operator bool() const { return !error_; }
    bool ok() const { return !error_; }
    const std::string& error() const {
        static const std::string none;
        return error_ ? *error_ : none;
    }

private:
    std::optional<std::string> error_;
};

} // namespace quarrydex
