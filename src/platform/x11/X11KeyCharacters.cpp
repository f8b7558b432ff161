#include "platform/x11/X11KeyCharacters.h"

#include "platform/x11/X11Keyboard.h"

#include <utility>

namespace velloran::platform::x11 {

std::optional<std::string> X11KeyCharacters::charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) {
    // Asked anew each time: keys are recorded one at a time, and the layout may have been switched in between.
    const auto layout = keyboard_.layout();
    if (!layout) {
        return std::nullopt;
    }
    std::string characters = layout.value().charactersIgnoringModifiers(evdevCode, keyboard_.state(), shiftHeld);
    return characters.empty() ? std::nullopt : std::optional(std::move(characters));
}

} // namespace velloran::platform::x11
