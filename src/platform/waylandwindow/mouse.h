#pragma once

namespace velloran::platform::waylandwindow {

/// Some releases of the toolkit know a pointer on Wayland as a touch pad only, and take its clicks for those of a
/// finger, which has no buttons: whoever waits for one button is told of each. This gives them a mouse, whose all of
/// that is from now on. Does nothing where there is one. To be called once there is an application, in its main thread.
void ensureMouse();

} // namespace velloran::platform::waylandwindow
