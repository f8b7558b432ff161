#include "platform/qt/monitors.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace velloran::platform::qt {

namespace {

/// How far a pixel lies outside of a monitor; 0 on it.
double pixelsOutside(const Monitor& monitor, Point pixels) {
    // Its middle decides: the first pixel of a monitor lies on the border of the one before.
    const double x = pixels.x + 0.5 - monitor.corner.x;
    const double y = pixels.y + 0.5 - monitor.corner.y;
    return std::hypot(std::max({-x, 0.0, x - monitor.width * monitor.scale}),
                      std::max({-y, 0.0, y - monitor.height * monitor.scale}));
}

} // namespace

std::vector<Monitor> currentMonitors() {
    std::vector<Monitor> monitors;
    for (const QScreen* const screen : QGuiApplication::screens()) {
        const QRectF area = screen->geometry();
        monitors.push_back({{area.x(), area.y()}, area.width(), area.height(), screen->devicePixelRatio()});
    }
    return monitors;
}

Point pointsFromPixels(Point pixels, const std::vector<Monitor>& monitors) {
    const auto under = std::min_element(monitors.begin(), monitors.end(), [pixels](const Monitor& a, const Monitor& b) {
        return pixelsOutside(a, pixels) < pixelsOutside(b, pixels);
    });
    if (under == monitors.end()) {
        return pixels;
    }
    return {under->corner.x + (pixels.x - under->corner.x) / under->scale,
            under->corner.y + (pixels.y - under->corner.y) / under->scale};
}

} // namespace velloran::platform::qt
