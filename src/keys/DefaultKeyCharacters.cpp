#include "keys/DefaultKeyCharacters.h"

#include <utility>

namespace velloran::keys {

DefaultKeyCharacters::DefaultKeyCharacters() : layout_(KeyboardLayout::fromNames({})) {}

std::optional<std::string> DefaultKeyCharacters::charactersIgnoringModifiers(std::uint32_t evdevCode,
                                                                             bool shiftHeld) const {
    if (!layout_) {
        return std::nullopt;
    }
    std::string characters = layout_.value().charactersIgnoringModifiers(evdevCode, {}, shiftHeld);
    return characters.empty() ? std::nullopt : std::optional(std::move(characters));
}

} // namespace velloran::keys
