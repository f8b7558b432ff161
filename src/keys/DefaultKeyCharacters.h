#pragma once

#include "platform/KeyCharacters.h"
#include "keys/KeyboardLayout.h"

namespace velloran::keys {

/// What the keys give under the system's default layout with Num Lock off, for sessions that tell neither.
class DefaultKeyCharacters final : public platform::KeyCharacters {
public:
    DefaultKeyCharacters();

    std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) override;

private:
    const Result<KeyboardLayout> layout_;
};

} // namespace velloran::keys
