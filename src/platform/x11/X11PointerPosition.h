#pragma once

#include "platform/PointerPosition.h"
#include "platform/x11/MainConnection.h"

#include <functional>

namespace velloran::platform::x11 {

/// The place in points of a place in the server's pixels. The server knows no points: who draws the windows decides how
/// many pixels make one, for each monitor.
using PixelsToPoints = std::function<Point(Point)>;

/// The pointer's position as the server tells it; nothing once the server is gone. Waits for the server's answer.
class X11PointerPosition final : public PointerPosition {
public:
    /// Without `toPoints` a pixel is a point.
    X11PointerPosition(MainConnection& connection, PixelsToPoints toPoints);

    std::optional<Point> currentPosition() override;

private:
    MainConnection& connection_;
    const PixelsToPoints toPoints_;
};

} // namespace velloran::platform::x11
