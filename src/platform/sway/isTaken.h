#pragma once

#include "platform/sway/UserBindings.h"

#include <cstdint>
#include <vector>

namespace velloran::keys {
class KeyboardLayout;
}

namespace velloran::platform::sway {

/// Whether one of the user's bindings stands for that key, in evdev's numbers, with those modifiers, in the keymap's:
/// by its place, or by what it gives in `layout`. Null is the layout that is there by default.
bool isTaken(std::uint32_t evdevCode, std::uint32_t modifiers, const std::vector<UserBinding>& bindings,
             const keys::KeyboardLayout* layout);

} // namespace velloran::platform::sway
