#pragma once

namespace velloran::platform {

/// What the desktop does with a window that asks for it; all of it where it does not say.
struct WindowAbilities {
    /// Has a menu of its own for windows.
    bool opensMenu = true;
    bool maximizes = true;
    bool minimizes = true;

    friend bool operator==(const WindowAbilities&, const WindowAbilities&) = default;
};

} // namespace velloran::platform
