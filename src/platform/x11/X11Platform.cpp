#include "platform/x11/X11Platform.h"

#include "platform/x11/MainConnection.h"
#include "async/ConnectionLoss.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputTrust.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11PointerEvents.h"
#include "platform/x11/X11PointerPosition.h"
#include "platform/x11/XcbHandles.h"

#include <csignal>
#include <string>
#include <utility>

namespace velloran::platform::x11 {

namespace {

/// Null when there is no such server.
XcbConnection open(const char* displayName) {
    XcbConnection connection(xcb_connect(displayName, nullptr));
    if (xcb_connection_has_error(connection.get()) != 0) {
        connection.reset();
    }
    return connection;
}

void ignoreBrokenPipes() {
    struct sigaction action {};

    if (sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &action, nullptr);
    }
}

} // namespace

/// Each part uses those above it.
struct X11Platform::Parts {
    Parts(EventLoop& loop, std::function<void()> onServerLost, PixelsToPoints toPoints, XcbConnection main,
          XcbConnection clicks)
        : loss(loop, std::move(onServerLost)),
          connection(std::move(main), loop, loss),
          keyboard(connection),
          pointerEvents(std::move(clicks), loss),
          pointerPosition(connection, std::move(toPoints)),
          inputTrust(pointerEvents, loss),
          hotKeys(connection, keyboard) {}

    ConnectionLoss loss;
    MainConnection connection;
    X11Keyboard keyboard;
    X11PointerEvents pointerEvents;
    X11PointerPosition pointerPosition;
    X11InputTrust inputTrust;
    X11HotKeys hotKeys;
};

Result<std::unique_ptr<X11Platform>> X11Platform::connect(EventLoop& loop, std::function<void()> onServerLost,
                                                          PixelsToPoints toPoints, const char* displayName) {
    XcbConnection main = open(displayName);
    XcbConnection clicks = open(displayName);
    if (!main || !clicks) {
        return Error{"No X server answers at " + (displayName != nullptr ? std::string(displayName) : "the display")};
    }
    ignoreBrokenPipes();
    auto parts =
        std::make_unique<Parts>(loop, std::move(onServerLost), std::move(toPoints), std::move(main), std::move(clicks));
    return std::unique_ptr<X11Platform>(new X11Platform(std::move(parts)));
}

X11Platform::X11Platform(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

X11Platform::~X11Platform() = default;

PointerEvents& X11Platform::pointerEvents() {
    return parts_->pointerEvents;
}

PointerPosition& X11Platform::pointerPosition() {
    return parts_->pointerPosition;
}

InputTrust& X11Platform::inputTrust() {
    return parts_->inputTrust;
}

HotKeys& X11Platform::hotKeys() {
    return parts_->hotKeys;
}

X11Keyboard& X11Platform::keyboard() {
    return parts_->keyboard;
}

} // namespace velloran::platform::x11
