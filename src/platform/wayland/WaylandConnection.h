#pragma once

#include "async/ConnectionLoss.h"
#include "async/EventLoop.h"

#include <wayland-client.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace velloran::platform::wayland {

/// A connection to the compositor beside the toolkit's: with a descriptor of its own, read in turns of the main loop.
/// Nothing but `waitAndRead` waits for the compositor. `send`, `isLost` and `isKeeping` may be called on any thread,
/// the rest belongs to the main thread.
class WaylandConnection {
public:
    /// Connects to the compositor of that name: one below the user's run-time folder, or a whole path. `onLost` is
    /// called once, in a turn of the loop, when the connection has broken; it may destroy this object. Nothing when no
    /// compositor listens there.
    static std::unique_ptr<WaylandConnection> open(EventLoop& loop, const std::string& name,
                                                   std::function<void()> onLost);

    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;
    ~WaylandConnection();

    [[nodiscard]] wl_display* display() const { return display_; }

    /// Whether the connection has broken, told already or not.
    [[nodiscard]] bool isLost() const { return loss_.isLost(); }

    /// Whether the compositor has yet to read something that was sent.
    [[nodiscard]] bool isKeeping() const;

    /// Waits until the compositor has sent something, at most that long, and takes it in.
    void waitAndRead(std::chrono::milliseconds atMost);

    /// Makes the requests of `requests` and sends them, in one write and with nothing else between them. Does not wait:
    /// a compositor that takes in nothing more counts as lost. Must not be called from inside `requests`.
    template<typename Requests>
    void send(Requests&& requests) {
        const std::lock_guard lock(sending_);
        std::forward<Requests>(requests)();
        flush();
    }

private:
    WaylandConnection(EventLoop& loop, wl_display* display, std::function<void()> onLost);

    void flush();
    void read();

    wl_display* const display_;
    ConnectionLoss loss_;
    std::mutex sending_;
    std::unique_ptr<EventLoop::Watch> watch_;
};

} // namespace velloran::platform::wayland
