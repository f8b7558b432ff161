#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velloran::platform {

/// What the keys give under the current keyboard layout. Main thread.
class KeyCharacters {
public:
    KeyCharacters() = default;
    KeyCharacters(const KeyCharacters&) = delete;
    KeyCharacters& operator=(const KeyCharacters&) = delete;
    virtual ~KeyCharacters() = default;

    /// The text (UTF-8) of the key with every modifier dropped except Shift and Num Lock, by its evdev code; a readable
    /// name for keys that give none. Nothing for dead keys and keys that the layout does not know.
    virtual std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) = 0;
};

} // namespace velloran::platform
