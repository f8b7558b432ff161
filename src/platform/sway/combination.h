#pragma once

#include <cstdint>
#include <string>

namespace velloran::platform::sway {

/// From evdev's key codes to those that bindings name.
inline constexpr std::uint32_t keyCodeOffset = 8;

/// Modifiers as keymaps count them.
std::uint32_t keymapModifiers(std::uint32_t modifiers);

/// A key with modifiers as a binding of sway's names it: by its place on the keyboard.
std::string combinationText(std::uint32_t modifiers, std::uint32_t evdevCode);

} // namespace velloran::platform::sway
