#include "platform/hyprland/reply.h"

#include "base/strictJson.h"

#include <cmath>

namespace velloran::platform::hyprland {

namespace {

/// No desktop is wider: beyond it numbers are no places.
constexpr double farthest = 1e9;

} // namespace

std::optional<Point> placeIn(const std::string& answer) {
    const auto value = json::parse(answer);
    if (!value) {
        return std::nullopt;
    }
    Point place;
    json::ObjectReader reader(value.value());
    reader.required("x", place.x, json::asReal);
    reader.required("y", place.y, json::asReal);
    const bool isPlace = !reader.failure() && std::abs(place.x) <= farthest && std::abs(place.y) <= farthest;
    return isPlace ? std::optional(place) : std::nullopt;
}

} // namespace velloran::platform::hyprland
