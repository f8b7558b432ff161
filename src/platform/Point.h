#pragma once

namespace velloran::platform {

/// A place on the desktop, in points.
struct Point {
    double x = 0.0;
    double y = 0.0;

    friend bool operator==(const Point&, const Point&) = default;
};

} // namespace velloran::platform
