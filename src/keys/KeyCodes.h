#pragma once

#include <cstdint>
#include <optional>

namespace velloran::keys {

/// The number that this program stores for a key: where the key sits on the keyboard, whatever the layout prints on it
/// (0 = A … 126 = Up). A key that has no number of its own there is stored as this base plus its evdev code.
inline constexpr std::uint32_t extendedVirtualKeyBase = 0x1000;

/// The last evdev code that a window system can carry as a key code (evdev + 8, one byte).
inline constexpr std::uint32_t lastCarriedEvdevCode = 247;

/// The evdev code of a stored key; nothing when no key has that number.
std::optional<std::uint32_t> evdevFromVirtualKey(std::uint32_t virtualKey);

/// The number to store for an evdev code; nothing when it names no key. The inverse of the above.
std::optional<std::uint32_t> virtualKeyFromEvdev(std::uint32_t evdevCode);

} // namespace velloran::keys
