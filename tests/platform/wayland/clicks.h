#pragma once

#include "platform/PointerEvents.h"

namespace velloran::tests {

/// A button by its names here, and by the number that windows see.
struct ButtonCase {
    platform::EventButton button;
    platform::MouseEventType down;
    platform::MouseEventType up;
    unsigned number;
};

inline constexpr ButtonCase left{platform::EventButton::left, platform::MouseEventType::leftMouseDown,
                                 platform::MouseEventType::leftMouseUp, 0x110};
inline constexpr ButtonCase right{platform::EventButton::right, platform::MouseEventType::rightMouseDown,
                                  platform::MouseEventType::rightMouseUp, 0x111};
inline constexpr ButtonCase middle{platform::EventButton::center, platform::MouseEventType::otherMouseDown,
                                   platform::MouseEventType::otherMouseUp, 0x112};

/// One click as the engine makes it. False when a half cannot be made.
inline bool click(platform::PointerEvents& pointer, const ButtonCase& button = left) {
    const platform::Point position = pointer.location().value_or(platform::Point{});
    bool isWhole = true;
    for (const platform::MouseEventType type : {button.down, button.up}) {
        const auto event = pointer.makeMouseEvent(type, position, button.button);
        isWhole = isWhole && event.has_value();
        if (event) {
            pointer.post(*event);
        }
    }
    pointer.flush();
    return isWhole;
}

} // namespace velloran::tests
