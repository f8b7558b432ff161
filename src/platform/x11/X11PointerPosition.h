#pragma once

#include "platform/PointerPosition.h"
#include "platform/x11/MainConnection.h"

namespace velloran::platform::x11 {

/// The pointer's position as the server tells it; nothing once the server is gone.
class X11PointerPosition final : public PointerPosition {
public:
    explicit X11PointerPosition(MainConnection& connection) : connection_(connection) {}

    std::optional<Point> currentPosition() override;

private:
    MainConnection& connection_;
};

} // namespace velloran::platform::x11
