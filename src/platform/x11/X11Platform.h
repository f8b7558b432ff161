#pragma once

#include "async/EventLoop.h"
#include "base/Result.h"
#include "platform/HotKeys.h"
#include "platform/InputTrust.h"
#include "platform/PointerEvents.h"
#include "platform/PointerPosition.h"
#include "platform/x11/X11PointerPosition.h"

#include <functional>
#include <memory>

namespace velloran::platform::x11 {

class X11Keyboard;

/// An X server as the platform sees it. Main thread, but for the pointer events, which have a connection of their own
/// and belong to the engine's thread while clicks are posted. Outlives every queue that still posts.
class X11Platform {
public:
    /// Connects to the server called `displayName`, or to the one that the environment names. `toPoints` is asked
    /// about each position of the pointer; without it a pixel is a point.
    ///
    /// `onServerLost` is called once, in a turn of `loop`, when the server is gone; from then on every operation is
    /// harmless and does nothing. It may destroy the platform. Broken pipes are ignored in the whole process from here
    /// on, unless it has said what to do with them: otherwise the loss would end the program without a word.
    static Result<std::unique_ptr<X11Platform>> connect(EventLoop& loop, std::function<void()> onServerLost,
                                                        PixelsToPoints toPoints, const char* displayName = nullptr);

    X11Platform(const X11Platform&) = delete;
    X11Platform& operator=(const X11Platform&) = delete;
    ~X11Platform();

    PointerEvents& pointerEvents();
    PointerPosition& pointerPosition();
    InputTrust& inputTrust();
    HotKeys& hotKeys();

    /// The keyboard's layout, for who records shortcuts.
    X11Keyboard& keyboard();

private:
    struct Parts;

    explicit X11Platform(std::unique_ptr<Parts> parts);

    const std::unique_ptr<Parts> parts_;
};

} // namespace velloran::platform::x11
