#pragma once

#include "async/ConnectionLoss.h"
#include "async/EventLoop.h"
#include "base/Result.h"
#include "platform/x11/MainConnection.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputTrust.h"
#include "platform/x11/X11KeyCharacters.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11PointerEvents.h"
#include "platform/x11/X11PointerPosition.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velloran::platform::x11 {

/// An X server, and what it can do for the program, each part on its own. All parts but the clicks share the connection
/// of the main thread, and each keeps the server for as long as it is used. Main thread.
class X11Server : public std::enable_shared_from_this<X11Server> {
public:
    /// Connects to the server called `displayName`, or to the one that the environment names.
    ///
    /// `onLost` is called once, in a turn of `loop`, when the server is gone; from then on every operation of every
    /// part is harmless and does nothing. It may let go of the parts. Broken pipes are ignored in the whole process
    /// from here on, unless it has said what to do with them: otherwise the loss would end the program without a word.
    static Result<std::shared_ptr<X11Server>> connect(EventLoop& loop, std::function<void()> onLost,
                                                      const char* displayName = nullptr);

    X11Server(const X11Server&) = delete;
    X11Server& operator=(const X11Server&) = delete;
    ~X11Server() = default;

    /// Has a connection of its own, which belongs to the engine's thread while clicks are posted. Null when the server
    /// takes no further one.
    std::shared_ptr<X11PointerEvents> pointerEvents();

    /// Whether those clicks can be posted.
    std::shared_ptr<X11InputTrust> inputTrust(std::shared_ptr<X11PointerEvents> events);

    /// `toPoints` is asked about each position; without it a pixel is a point.
    std::shared_ptr<X11PointerPosition> pointerPosition(PixelsToPoints toPoints);

    /// At most one at a time: it gets the server's events.
    std::shared_ptr<X11HotKeys> hotKeys();

    std::shared_ptr<X11KeyCharacters> keyCharacters();

    [[nodiscard]] X11Keyboard& keyboard() { return keyboard_; }

private:
    X11Server(EventLoop& loop, std::function<void()> onLost, XcbConnection connection, const char* displayName);

    template<typename Part, typename... Arguments>
    std::shared_ptr<Part> make(Arguments&&... arguments);

    ConnectionLoss loss_;
    MainConnection connection_;
    X11Keyboard keyboard_;
    /// Nothing is the one that the environment names.
    std::optional<std::string> displayName_;
};

} // namespace velloran::platform::x11
