#include "engine/MouseTracker.h"

#include "platform/PointerPosition.h"

#include <cmath>
#include <utility>

namespace velloran {

std::optional<platform::Point> MouseTracker::currentPosition() const {
    const auto pointer = desktop_.get().pointer.part;
    return pointer ? pointer->currentPosition() : std::nullopt;
}

void MouseTracker::reset() {
    lastPosition_.reset();
    stationarySince_.reset();
}

bool MouseTracker::hasBeenStationary(double forAtLeast) {
    const Date now = clock_.now();
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
