#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloran {

/// A universally unique identifier (RFC 4122).
class Uuid {
public:
    /// The nil identifier, all zeros.
    Uuid() = default;

    /// A fresh random one (version 4).
    static Uuid random();

    /// Reads the 36-character hyphenated form, in either case; nothing else is accepted.
    static std::optional<Uuid> fromText(std::string_view text);

    /// The 36-character hyphenated form in upper case.
    [[nodiscard]] std::string text() const;

    friend auto operator<=>(const Uuid&, const Uuid&) = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace velloran
