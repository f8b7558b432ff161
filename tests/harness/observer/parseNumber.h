#pragma once

#include <charconv>
#include <optional>
#include <string_view>

namespace velloran::observer {

/// The whole text as a number; nothing when it is anything else or does not fit.
template<typename T>
std::optional<T> parseNumber(std::string_view text) {
    T number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace velloran::observer
