#pragma once

#include "platform/bus/ActivationToken.h"

class QWindow;

namespace velloran::platform::windowmanager {

/// Brings the window to the front, out of the task bar if need be, and gives it the focus as far as `token` makes the
/// desktop allow it. Tells the desktop that the start-up that the token stands for has come to its end.
void raiseWindow(QWindow& window, const bus::ActivationToken& token);

} // namespace velloran::platform::windowmanager
