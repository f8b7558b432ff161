#pragma once

#include <xcb/xcb.h>

namespace velloran::platform::windowmanager {

/// The server's number for a name; none when the server is gone.
xcb_atom_t atomOf(xcb_connection_t* connection, const char* name);

/// The root window of the screen that the window is on; none when there is no such window.
xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window);

} // namespace velloran::platform::windowmanager
