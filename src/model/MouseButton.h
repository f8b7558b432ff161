#pragma once

#include "model/RawValue.h"

#include <array>
#include <string_view>

namespace velloran {

/// The button that is clicked.
enum class MouseButton { left, right, middle };

/// All of them, in the order in which they are offered.
inline constexpr std::array allMouseButtons{MouseButton::left, MouseButton::right, MouseButton::middle};

/// The stored name: "left", "right" or "middle". Also the button's identifier in lists.
std::string_view rawValue(MouseButton button);

/// The name shown to the user.
std::string_view displayName(MouseButton button);

template<>
std::optional<MouseButton> fromRawValue(std::string_view text);

} // namespace velloran
