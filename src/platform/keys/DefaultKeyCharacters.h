#pragma once

#include "platform/KeyCharacters.h"
#include "platform/keys/KeyboardLayout.h"

namespace velloran::platform::keys {

/// What the keys give under the system's default layout with Num Lock off, for sessions that tell neither.
class DefaultKeyCharacters final : public KeyCharacters {
public:
    DefaultKeyCharacters();

    std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) override;

private:
    const Result<KeyboardLayout> layout_;
};

} // namespace velloran::platform::keys
