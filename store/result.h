#pragma once
// A value or a user-facing error message. The core reports every failure this way;
// exceptions from the libraries it uses are caught at its boundary.

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace quarrydex {

struct Error {
    std::string message;
};

template <class T> class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::move(value)) {}
    Result(Error error) : state_(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(state_); }
    bool ok() const { return bool(*this); }

    T& value() & { return std::get<T>(state_); }
    const T& value() const& { return std::get<T>(state_); }
    T&& value() && { return std::get<T>(std::move(state_)); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }

    // The message of a failed result; empty for a success.
    const std::string& error() const {
        static const std::string none;
        return ok() ? none : std::get<Error>(state_).message;
    }

private:
    std::variant<T, Error> state_;
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
