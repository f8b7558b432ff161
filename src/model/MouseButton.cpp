#include "model/MouseButton.h"

#include <algorithm>

namespace velloran {

std::string_view rawValue(MouseButton button) {
    switch (button) {
    case MouseButton::left:
        return "left";
    case MouseButton::right:
        return "right";
    case MouseButton::middle:
        return "middle";
    }
    return {};
}

std::string_view displayName(MouseButton button) {
    switch (button) {
    case MouseButton::left:
        return "Left Click";
    case MouseButton::right:
        return "Right Click";
    case MouseButton::middle:
        return "Middle Click";
    }
    return {};
}

template<>
std::optional<MouseButton> fromRawValue(std::string_view text) {
    const auto found = std::find_if(allMouseButtons.begin(), allMouseButtons.end(),
                                    [text](MouseButton button) { return rawValue(button) == text; });
    return found != allMouseButtons.end() ? std::optional(*found) : std::nullopt;
}

} // namespace velloran
