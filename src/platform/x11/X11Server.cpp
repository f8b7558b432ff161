#include "platform/x11/X11Server.h"

#include "platform/x11/XcbHandles.h"

#include <csignal>
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

Result<std::shared_ptr<X11Server>> X11Server::connect(EventLoop& loop, std::function<void()> onLost,
                                                      const char* displayName) {
    XcbConnection connection = open(displayName);
    if (!connection) {
        return Error{"No X server answers at " + (displayName != nullptr ? std::string(displayName) : "the display")};
    }
    ignoreBrokenPipes();
    return std::shared_ptr<X11Server>(new X11Server(loop, std::move(onLost), std::move(connection), displayName));
}

X11Server::X11Server(EventLoop& loop, std::function<void()> onLost, XcbConnection connection, const char* displayName)
    : loss_(loop, std::move(onLost)),
      connection_(std::move(connection), loop, loss_),
      keyboard_(connection_),
      displayName_(displayName != nullptr ? std::optional<std::string>(displayName) : std::nullopt) {}

template<typename Part, typename... Arguments>
std::shared_ptr<Part> X11Server::make(Arguments&&... arguments) {
    return std::shared_ptr<Part>(new Part(std::forward<Arguments>(arguments)...),
                                 [server = shared_from_this()](Part* part) { delete part; });
}

std::shared_ptr<X11PointerEvents> X11Server::pointerEvents() {
    XcbConnection own = open(displayName_ ? displayName_->c_str() : nullptr);
    return own ? make<X11PointerEvents>(std::move(own), loss_) : nullptr;
}

std::shared_ptr<X11InputTrust> X11Server::inputTrust(std::shared_ptr<X11PointerEvents> events) {
    return make<X11InputTrust>(std::move(events), loss_);
}

std::shared_ptr<X11PointerPosition> X11Server::pointerPosition(PixelsToPoints toPoints) {
    return make<X11PointerPosition>(connection_, std::move(toPoints));
}

std::shared_ptr<X11HotKeys> X11Server::hotKeys() {
    return make<X11HotKeys>(connection_, keyboard_);
}

std::shared_ptr<X11KeyCharacters> X11Server::keyCharacters() {
    return make<X11KeyCharacters>(keyboard_);
}

} // namespace velloran::platform::x11
