#pragma once

#include "platform/Point.h"

#include <optional>

namespace velloran::platform {

/// Tells where the pointer is. Main thread.
class PointerPosition {
public:
    PointerPosition() = default;
    PointerPosition(const PointerPosition&) = delete;
    PointerPosition& operator=(const PointerPosition&) = delete;
    virtual ~PointerPosition() = default;

    /// The pointer's position in global coordinates; nothing where the desktop does not tell.
    virtual std::optional<Point> currentPosition() = 0;
};

} // namespace velloran::platform
