#include "platform/wayland/WaylandConnection.h"

#include "async/hasUnread.h"

#include <poll.h>

#include <utility>

namespace velloran::platform::wayland {

std::unique_ptr<WaylandConnection> WaylandConnection::open(EventLoop& loop, const std::string& name,
                                                           std::function<void()> onLost) {
    wl_display* const display = wl_display_connect(name.c_str());
    if (display == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(loop, display, std::move(onLost)));
}

WaylandConnection::WaylandConnection(EventLoop& loop, wl_display* display, std::function<void()> onLost)
    : display_(display),
      loss_(loop, std::move(onLost)),
      watch_(loop.watch(wl_display_get_fd(display), EventLoop::Readiness::readable, [this] { read(); })) {}

WaylandConnection::~WaylandConnection() {
    watch_.reset();
    wl_display_disconnect(display_);
}

void WaylandConnection::flush() {
    if (wl_display_flush(display_) < 0) {
        loss_.report();
    }
}

bool WaylandConnection::isKeeping() const {
    return hasUnread(wl_display_get_fd(display_));
}

void WaylandConnection::waitAndRead(std::chrono::milliseconds atMost) {
    pollfd descriptor{wl_display_get_fd(display_), POLLIN, 0};
    if (!isLost() && poll(&descriptor, 1, static_cast<int>(atMost.count())) > 0) {
        read();
    }
}

void WaylandConnection::read() {
    bool isWhole = true;
    while (isWhole && wl_display_prepare_read(display_) != 0) {
        isWhole = wl_display_dispatch_pending(display_) >= 0;
    }
    isWhole = isWhole && wl_display_read_events(display_) >= 0;
    isWhole = isWhole && wl_display_dispatch_pending(display_) >= 0;
    if (!isWhole) {
        loss_.report();
        // The descriptor of a broken connection can be read for ever.
        watch_.reset();
    }
}

} // namespace velloran::platform::wayland
