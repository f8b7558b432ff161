#pragma once

#include "keys/KeyboardLayout.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran::keys {

/// What the keys give under the system's default layout with Num Lock off, for sessions that tell neither.
class DefaultKeyCharacters {
public:
    DefaultKeyCharacters();

    /// The text (UTF-8) of the key with every modifier dropped except Shift, by its evdev code; a readable name for
    /// keys that give none. Nothing for dead keys and keys that the layout does not know.
    [[nodiscard]] std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) const;

private:
    const Result<KeyboardLayout> layout_;
};

} // namespace velloran::keys
