#include "engine/MouseTracker.h"

#include "async/EventLoop.h"
#include "platform/Platform.h"
#include "platform/PointerPosition.h"

#include <cmath>
#include <utility>

namespace velloran {

using platform::Platform;

// A member, so that whoever asks holds a tracker.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::optional<platform::Point> MouseTracker::currentPosition() const {
    return Platform::current().pointerPosition.currentPosition();
}

void MouseTracker::reset() {
    lastPosition_.reset();
    stationarySince_.reset();
}

bool MouseTracker::hasBeenStationary(double forAtLeast) {
    const Date now = Platform::current().mainLoop.now();
    const auto position = currentPosition();
    const auto previous = std::exchange(lastPosition_, position);
    // An unknown position may hide any movement: no click is better than a wrong one.
    if (!position || !previous ||
        std::hypot(position->x - previous->x, position->y - previous->y) > movementThreshold_) {
        stationarySince_ = now;
        return false;
    }
    if (!stationarySince_) {
        stationarySince_ = now;
    }
    return now - *stationarySince_ >= forAtLeast;
}

} // namespace velloran
