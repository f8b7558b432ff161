#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "base/Date.h"
#include "platform/Desktop.h"
#include "platform/Point.h"

#include <optional>

namespace velloran {

/// Tells whether the pointer has stayed still, judging by its positions at the moments of asking alone: movement
/// between two questions that comes back, and a drift of no more than the threshold each time, count as still. Main
/// thread.
class MouseTracker {
public:
    /// Dates are those of `clock`. Both must outlive this object.
    MouseTracker(const EventLoop& clock, const Published<platform::Desktop>& desktop)
        : clock_(clock), desktop_(desktop) {}

    MouseTracker(const MouseTracker&) = delete;
    MouseTracker& operator=(const MouseTracker&) = delete;

    /// The pointer's position in global coordinates; nothing where the desktop does not tell.
    [[nodiscard]] std::optional<platform::Point> currentPosition() const;

    /// Forgets what was seen.
    void reset();

    /// Whether the pointer has been still for that many seconds. False at the first question after a reset, and at
    /// every question while the position is unknown.
    bool hasBeenStationary(double forAtLeast);

private:
    const EventLoop& clock_;
    const Published<platform::Desktop>& desktop_;
    /// The longest way between two questions, in points, that still counts as still.
    double movementThreshold_ = 2.0;
    std::optional<platform::Point> lastPosition_;
    std::optional<Date> stationarySince_;
};

} // namespace velloran
