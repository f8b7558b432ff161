#pragma once

#include "platform/Point.h"

#include <optional>
#include <string>

namespace velloran::platform::hyprland {

/// The place in an answer to `j/cursorpos`, in points: whole numbers or others, as they come. Nothing in anything else,
/// such as an answer that is not whole yet, and where the numbers can be no place.
std::optional<Point> placeIn(const std::string& answer);

} // namespace velloran::platform::hyprland
