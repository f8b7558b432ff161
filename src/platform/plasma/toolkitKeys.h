#pragma once

#include "keys/KeyboardLayout.h"
#include "platform/plasma/KeySequence.h"

#include <cstdint>

namespace velloran::platform::plasma {

/// All by which Plasma may know the press of a key, while that group of the layout is active: its hotkeys are those of
/// symbols, and what Shift and the layout make of a key counts with or without Shift. None of them is what another key
/// gives with these modifiers. Empty where no key has that number, or it gives nothing that can be a hotkey.
KeySequenceList keySequencesOf(std::uint32_t keyCode, std::uint32_t modifiers, const keys::KeyboardLayout& layout,
                               std::uint32_t group);

} // namespace velloran::platform::plasma
