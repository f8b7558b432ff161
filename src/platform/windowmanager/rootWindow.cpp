#include "platform/windowmanager/rootWindow.h"

#include "base/Allocated.h"

#include <cstdint>
#include <cstring>

namespace velloran::platform::windowmanager {

xcb_atom_t atomOf(xcb_connection_t* connection, const char* name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Allocated<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto cookie = xcb_get_geometry(connection, window);
    const Allocated<xcb_get_geometry_reply_t> reply(xcb_get_geometry_reply(connection, cookie, nullptr));
    return reply ? reply->root : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace velloran::platform::windowmanager
