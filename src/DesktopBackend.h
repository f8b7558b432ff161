#pragma once

#include "async/EventLoop.h"
#include "platform/HotKeys.h"
#include "platform/InputTrust.h"
#include "platform/KeyCharacters.h"
#include "platform/PointerEvents.h"
#include "platform/PointerPosition.h"
#include "platform/SystemLog.h"
#include "ui/window/DesktopLimits.h"

#include <functional>
#include <memory>

namespace velloran {

/// The input side of the desktop, whichever backend it is. Its parts live as long as this object.
class DesktopBackend {
public:
    DesktopBackend() = default;
    DesktopBackend(const DesktopBackend&) = delete;
    DesktopBackend& operator=(const DesktopBackend&) = delete;
    virtual ~DesktopBackend() = default;

    virtual platform::PointerEvents& pointerEvents() = 0;
    virtual platform::PointerPosition& pointerPosition() = 0;
    virtual platform::InputTrust& inputTrust() = 0;
    virtual platform::HotKeys& hotKeys() = 0;
    virtual platform::KeyCharacters& keyCharacters() = 0;

    [[nodiscard]] virtual DesktopLimits limits() const = 0;
};

/// Makes the backend that fits the session of this process; there always is one. `onServerLost` is called in a turn of
/// the loop when the window system is gone.
std::unique_ptr<DesktopBackend> makeDesktopBackend(EventLoop& loop, platform::SystemLog& log,
                                                   std::function<void()> onServerLost);

} // namespace velloran
