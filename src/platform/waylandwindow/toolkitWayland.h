#pragma once

#include <cstdint>

class QWindow;

struct wl_display;
struct wl_seat;
struct wl_surface;
struct xdg_toplevel;

namespace velloran::platform::waylandwindow {

// What the toolkit has at the compositor. Null where the window system is another, and for a window that does not show.
// The toolkit keeps all of it and reads the connection; what is made beside it is told of in turns of the main loop.
// Main thread; needs the toolkit's application object.

/// The toolkit's connection.
wl_display* toolkitDisplay();

/// The seat whose input the windows of the program get.
wl_seat* toolkitSeat();

/// The number that the compositor gave to the last press or release; 0 before the first.
std::uint32_t lastInputSerial();

wl_surface* surfaceOf(QWindow& window);

xdg_toplevel* toplevelOf(QWindow& window);

} // namespace velloran::platform::waylandwindow
