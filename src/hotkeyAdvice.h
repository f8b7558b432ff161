#pragma once

#include "chooseDesktop.h"
#include "platform/Desktop.h"

namespace velloran {

/// How the user of this desktop binds a key to start and stop the program, which the desktop then tells of it: by which
/// desktop the session names itself. One that is not known gets the command alone.
platform::HotkeyAdvice hotkeyAdvice(const Environment& environment);

} // namespace velloran
