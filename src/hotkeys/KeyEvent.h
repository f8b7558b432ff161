#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velloran {

/// A press of a key that is not a modifier, as the keyboard reports it.
struct KeyEvent {
    /// Which modifiers were held, in the bits of `HotkeyCombo::modifierFlagsRaw`.
    std::uint64_t modifierFlags = 0;
    /// The layout-independent virtual key code.
    std::uint16_t keyCode = 0;
    /// The text of the key with every modifier dropped except Shift (UTF-8). Dead keys have none.
    std::optional<std::string> charactersIgnoringModifiers;
};

} // namespace velloran
