#pragma once

#include "async/EventLoop.h"
#include "chooseDesktop.h"
#include "platform/HotkeyConsent.h"

#include <functional>
#include <string>

namespace velloran {

/// The backends that there are. `onServerLost` is called in a turn of the loop when the window system is gone;
/// `sessionBus` is where the session bus is, in the form of its own environment variable, or empty; `consent` asks the
/// user for what needs it, and without one that is left out; `isActive` tells whether the hotkey would stop something
/// now. `loop` and `consent` must outlive the parts that they make.
Backends realBackends(EventLoop& loop, std::function<void()> onServerLost, const std::string& sessionBus = {},
                      platform::HotkeyConsent* consent = nullptr, std::function<bool()> isActive = {});

} // namespace velloran
