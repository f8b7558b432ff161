#pragma once

class QWindow;

namespace velloran::platform::windowmanager {

/// Has the window manager show its own menu for the window at the pointer, with everything it can do with windows.
/// False where it is not known to have one; then nothing happens. To be called while no button is held down.
bool showWindowManagerMenu(QWindow& window);

} // namespace velloran::platform::windowmanager
