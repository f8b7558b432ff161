#pragma once

#include <xcb/xcb.h>

namespace velloran::platform::windowmanager {

/// The server's number for a name; none when the server is gone.
xcb_atom_t atomOf(xcb_connection_t* connection, const char* name);

/// The root window of the screen that the window is on; none when there is no such window.
xcb_window_t rootOf(xcb_connection_t* connection, xcb_window_t window);

/// Sends a message about a window to the window manager. Does not flush.
void tellWindowManager(xcb_connection_t* connection, xcb_window_t root, const xcb_client_message_event_t& message);

} // namespace velloran::platform::windowmanager
