#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloran::platform::gnome {

/// A combination of keys as the desktop's settings write it: "<Control><Alt>s". By symbol.
struct Accelerator {
    /// Bits of modifier keys, as of hot keys.
    std::uint32_t modifiers = 0;
    /// The name of the symbol that the key gives by itself.
    std::string symbol;

    /// Nothing where it is none, or has a modifier that hot keys do not know.
    static std::optional<Accelerator> read(std::string_view written);

    /// In the form of the settings.
    [[nodiscard]] std::string written() const;

    /// For people: "Ctrl+Alt+S".
    [[nodiscard]] std::string words() const;

    /// Of names that differ in their case only, both stand for the same key.
    friend bool operator==(const Accelerator& first, const Accelerator& second);
};

} // namespace velloran::platform::gnome
