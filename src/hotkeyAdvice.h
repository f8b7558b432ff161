#pragma once

#include "chooseDesktop.h"
#include "platform/Desktop.h"

#include <functional>
#include <optional>
#include <string>

namespace velloran {

/// The name of the program that is the compositor; nothing where that is not known.
using CompositorProgram = std::function<std::optional<std::string>()>;

/// How the user of this desktop binds a key to start and stop the program, which the desktop then tells of it: by which
/// desktop the session names itself, else by the compositor's program, for a session may have no name: one that was
/// started from a console. One that is not known gets the command alone.
platform::HotkeyAdvice hotkeyAdvice(const Environment& environment, const CompositorProgram& compositorProgram);

} // namespace velloran
