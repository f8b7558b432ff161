#pragma once

#include <optional>
#include <string>

namespace velloran::platform {

/// What the user has set for all programs of the desktop. What a desktop does not tell is as it is here.
struct DesktopWishes {
    bool reducedMotion = false;
    bool highContrast = false;
    /// How much larger than usual text is to be, as the desktop says it: any number, or none.
    double textScale = 1;
    /// The window buttons, as "menu:minimize,maximize,close".
    std::optional<std::string> windowButtons;

    bool operator==(const DesktopWishes&) const = default;
};

} // namespace velloran::platform
