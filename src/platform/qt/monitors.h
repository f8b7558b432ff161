#pragma once

#include "platform/Point.h"

#include <vector>

namespace velloran::platform::qt {

/// A monitor as the toolkit sees it. Pixels and points share its top left corner; from there on a point takes `scale`
/// pixels.
struct Monitor {
    Point corner;
    /// In points.
    double width = 0.0;
    double height = 0.0;
    double scale = 1.0;
};

/// The monitors of this moment. Needs the application object; main thread.
std::vector<Monitor> currentMonitors();

/// The place in points of one of the window system's pixels, by the monitor that it is on, or else by the nearest. On
/// one monitor distances are exact. From one to another they need not be what the eye sees: points leave gaps where
/// pixels have none.
Point pointsFromPixels(Point pixels, const std::vector<Monitor>& monitors);

} // namespace velloran::platform::qt
