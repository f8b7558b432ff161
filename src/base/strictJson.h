#pragma once

#include "base/Bytes.h"
#include "base/Result.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

/// Strict reading and writing of JSON. The library below converts kindly (true to 1, -1 to 4294967295, 1.5 to 1, NaN to
/// null); nothing of that is wanted in stored settings.
namespace velloran::json {

using Value = nlohmann::json;

/// How the written text looks.
enum class Layout {
    compact,
    /// Indented, one member per line, keys sorted.
    pretty,
};

/// Reads one JSON text. The whole of `bytes` must be one value in valid UTF-8.
Result<Value> parse(const Bytes& bytes);

/// The same for a record of plain values, with the contents of its arrays left out, and those of objects that lie
/// deeper than `depth` in it (1 is the record itself). They are checked, but take no memory, however long the text is.
Result<Value> parseRecord(const Bytes& bytes, std::size_t depth);

/// Writes `value`. Fails when it holds a number that is not finite or text that is not UTF-8.
Result<Bytes> write(const Value& value, Layout layout);

/// A boolean, and only that.
std::optional<bool> asBoolean(const Value& value);

/// A number of any form that fits a double; not a boolean.
std::optional<double> asReal(const Value& value);

/// Text.
std::optional<std::string> asText(const Value& value);

/// A whole number that fits `Integer`: 100 and 100.0, not 100.5, not true, never wrapped and never rounded into the
/// range.
template<std::integral Integer>
std::optional<Integer> asInteger(const Value& value) {
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        return std::in_range<Integer>(number) ? std::optional(static_cast<Integer>(number)) : std::nullopt;
    }
    if (value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        return std::in_range<Integer>(number) ? std::optional(static_cast<Integer>(number)) : std::nullopt;
    }
    if (value.is_number_float()) {
        const auto number = value.get<double>();
        // The largest integer itself may not be a double; the power of two above it is. The smallest one is a double,
        // but so is whatever rounds to it: -9223372036854775809 comes as the same number.
        const double above = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
        const double below = std::is_signed_v<Integer> ? -above : -1.0;
        if (std::trunc(number) == number && number > below && number < above) {
            return static_cast<Integer>(number);
        }
    }
    return std::nullopt;
}

/// Reads the members of one object and remembers the first thing that was wrong. After the first failure the remaining
/// reads do nothing, so that a decoder can read all its members in a row and ask once.
class ObjectReader {
public:
    /// `value` must outlive the reader. A value that is not an object fails every read.
    explicit ObjectReader(const Value& value);

    /// Reads a member that must be there. `read` turns a `Value` into an `std::optional` of the member's type.
    template<typename T, typename Read>
    void required(const char* key, T& into, Read read) {
        const Value* const member = find(key);
        if (member == nullptr) {
            fail(key, "is missing");
            return;
        }
        store(key, *member, into, read);
    }

    /// Reads a member that may be missing or null; both leave `into` without a value.
    template<typename T, typename Read>
    void optional(const char* key, std::optional<T>& into, Read read) {
        const Value* const member = find(key);
        into.reset();
        if (member != nullptr && !member->is_null()) {
            T value{};
            store(key, *member, value, read);
            into = std::move(value);
        }
    }

    /// What was wrong first; nothing when every read succeeded.
    [[nodiscard]] const std::optional<Error>& failure() const { return failure_; }

private:
    const Value* find(const char* key) const;
    void fail(const char* key, std::string_view what);

    template<typename T, typename Read>
    void store(const char* key, const Value& member, T& into, Read read) {
        if (failure_) {
            return;
        }
        std::optional<T> value = read(member);
        if (!value) {
            fail(key, "has the wrong type or value");
            return;
        }
        into = *std::move(value);
    }

    const Value& object_;
    std::optional<Error> failure_;
};

} // namespace velloran::json
