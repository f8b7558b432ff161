#pragma once

#include <string>
#include <utility>
#include <variant>

namespace velloran {

/// Why an operation that may fail did fail, in words for a developer.
struct Error {
    std::string message;

    friend bool operator==(const Error&, const Error&) = default;
};

/// A value, or the reason why there is none.
template<typename T>
class Result {
public:
    // Implicit on purpose: a function returns either of the two.
    Result(T value) : content_(std::move(value)) {}

    Result(Error error) : content_(std::move(error)) {}

    /// Whether there is a value.
    [[nodiscard]] bool ok() const { return std::holds_alternative<T>(content_); }

    explicit operator bool() const { return ok(); }

    /// The value; only where `ok()`.
    [[nodiscard]] const T& value() const& { return std::get<T>(content_); }

    [[nodiscard]] T&& value() && { return std::get<T>(std::move(content_)); }

    /// The reason; only where not `ok()`.
    [[nodiscard]] const Error& error() const { return std::get<Error>(content_); }

private:
    std::variant<T, Error> content_;
};

} // namespace velloran
