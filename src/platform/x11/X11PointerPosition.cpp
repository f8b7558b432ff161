#include "platform/x11/X11PointerPosition.h"

#include <utility>

namespace velloran::platform::x11 {

namespace {

std::optional<Point> queryPointer(xcb_connection_t* connection) {
    if (xcb_connection_has_error(connection) != 0) {
        return std::nullopt;
    }
    // Asked of one screen the server tells the position on whichever screen the pointer is on.
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const Allocated<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), nullptr));
    if (!reply) {
        return std::nullopt;
    }
    return Point{static_cast<double>(reply->root_x), static_cast<double>(reply->root_y)};
}

} // namespace

X11PointerPosition::X11PointerPosition(MainConnection& connection, PixelsToPoints toPoints)
    : connection_(connection), toPoints_(std::move(toPoints)) {}

std::optional<Point> X11PointerPosition::currentPosition() {
    const std::optional<Point> pixels = queryPointer(connection_.get());
    connection_.settle();
    return pixels && toPoints_ ? toPoints_(*pixels) : pixels;
}

} // namespace velloran::platform::x11
