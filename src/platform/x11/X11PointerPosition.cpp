#include "platform/x11/X11PointerPosition.h"

#include "platform/x11/pointerQuery.h"

namespace velloran::platform::x11 {

std::optional<Point> X11PointerPosition::currentPosition() {
    const std::optional<Point> point = queryPointer(connection_.get());
    connection_.settle();
    return point;
}

} // namespace velloran::platform::x11
