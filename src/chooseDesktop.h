#pragma once

#include "async/Published.h"
#include "base/Result.h"
#include "platform/Desktop.h"

#include <functional>
#include <memory>
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
    /// Of the compositor that has this name. One that takes its time is taken to have it, until it says otherwise.
    std::function<Result<platform::Desktop>(const std::string& compositor)> virtualPointer;
    /// Where that compositor takes commands at `socket`, as sway does.
    std::function<Result<platform::Desktop>(const std::string& compositor, const std::string& socket)> sway;
    /// Which program the compositor of that name is. Null where nobody looks.
    std::function<std::optional<std::string>(const std::string& compositor)> compositorProgram = {};
    /// What every compositor tells.
    std::function<Result<platform::Desktop>(const std::string& compositor)> compositor;
    /// The hot keys that the compositor of that name binds for programs. Null where there are none to be had.
    std::function<std::shared_ptr<const Published<platform::Desktop>>(const std::string& compositor)>
        compositorHotKeys = {};
    /// Where the pointer is, as Hyprland tells it whose folder that is. Null where it is not the compositor of that
    /// name, or nobody listens there.
    std::function<std::shared_ptr<const Published<platform::Desktop>>(const std::string& compositor,
                                                                      const std::string& folder)>
        hyprland = {};
    /// What Plasma does for programs over the session bus. Null where there is no bus for it.
    std::function<std::shared_ptr<const Published<platform::Desktop>>()> plasma;
    /// The desktop's portal, whose parts come late, go, and come back. Null where there is no bus for it.
    std::function<std::shared_ptr<const Published<platform::Desktop>>()> portal;
    /// What GNOME does beside its portal, where its user agrees. Null where there is no bus for it.
    std::function<std::shared_ptr<const Published<platform::Desktop>>()> gnome = {};
    /// Becomes true when a compositor that took its time has no virtual pointer after all.
    std::shared_ptr<Published<bool>> lacksPointer = std::make_shared<Published<bool>>(false);
};

/// Why there are no clicks where the compositor has no pointer for programs: the end of a sentence.
inline constexpr auto noPointer = "the compositor gives programs no pointer.";

/// Asks the backends that fit the session, the best one first, and takes each part from the first that has it. Which
/// session this is counts before what answers in it: on Wayland an X server may well answer, but it only reaches
/// programs that use it themselves and swallows everything else without a word, so it is never asked there.
platform::Desktop chooseDesktop(const Environment& environment, const Backends& backends);

/// The value of a variable of the environment; nothing where it is empty, which counts as not set.
std::optional<std::string> setValue(const Environment& environment, const char* name);

/// Whether this is a session on Wayland, by what it says of itself.
bool isWayland(const Environment& environment);

/// There are no clicks, because the compositor turned out to give programs no pointer.
platform::DesktopPart<platform::PointerEvents> noPointerOfCompositor();

/// There is nobody who could be asked for the permission to click.
platform::DesktopPart<platform::InputTrust> nobodyAsked();

} // namespace velloran
