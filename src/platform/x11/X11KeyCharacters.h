#pragma once

#include "platform/KeyCharacters.h"

namespace velloran::platform::x11 {

class X11Keyboard;

/// What the server's keys give under the layout that is active when asked.
class X11KeyCharacters final : public KeyCharacters {
public:
    /// `keyboard` must outlive this object.
    explicit X11KeyCharacters(X11Keyboard& keyboard) : keyboard_(keyboard) {}

    std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) override;

private:
    X11Keyboard& keyboard_;
};

} // namespace velloran::platform::x11
