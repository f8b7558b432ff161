#pragma once

#include "async/EventLoop.h"
#include "base/Result.h"
#include "platform/Desktop.h"

#include <functional>
#include <optional>
#include <string>

namespace velloran {

/// Reads a variable of the environment; nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// The environment of this process.
std::optional<std::string> processEnvironment(const char* name);

/// How each backend makes the parts that it has. An error is the end of a sentence: why the backend has none.
struct Backends {
    std::function<Result<platform::Desktop>()> x11;
    /// Of the compositor that has this name.
    std::function<Result<platform::Desktop>(const std::string& compositor)> virtualPointer;
    /// Where that compositor takes commands at `socket`, as sway does.
    std::function<Result<platform::Desktop>(const std::string& compositor, const std::string& socket)> sway;
    /// What every compositor tells.
    std::function<Result<platform::Desktop>(const std::string& compositor)> compositor;
};

/// The real ones. `onServerLost` is called in a turn of the loop when the window system is gone. `loop` must outlive
/// the parts that they make.
Backends realBackends(EventLoop& loop, std::function<void()> onServerLost);

/// Asks the backends that fit the session, the best one first, and takes each part from the first that has it. Which
/// session this is counts before what answers in it: on Wayland an X server may well answer, but it only reaches
/// programs that use it themselves and swallows everything else without a word, so it is never asked there.
platform::Desktop chooseDesktop(const Environment& environment, const Backends& backends);

} // namespace velloran
