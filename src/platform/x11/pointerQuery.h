#pragma once

#include "platform/Point.h"
#include "platform/x11/XcbHandles.h"

#include <optional>

namespace velloran::platform::x11 {

/// Where the pointer is on its screen; nothing when the server does not answer. Waits for the answer.
std::optional<Point> queryPointer(xcb_connection_t* connection);

} // namespace velloran::platform::x11
