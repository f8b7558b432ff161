#pragma once

#include "async/EventLoop.h"

#include <atomic>
#include <functional>
#include <memory>

namespace velloran::platform::x11 {

/// Notices once that the X server is gone, and tells it in a turn of the main loop. `report` and `isLost` may be called
/// on any thread, the rest belongs to the main thread. `onLost` may destroy this object.
class ServerLoss {
public:
    ServerLoss(EventLoop& loop, std::function<void()> onLost);
    ServerLoss(const ServerLoss&) = delete;
    ServerLoss& operator=(const ServerLoss&) = delete;
    ~ServerLoss();

    /// A connection is broken. Only the first report counts.
    void report();

    [[nodiscard]] bool isLost() const { return isLost_.load(std::memory_order_acquire); }

private:
    void tell();

    EventLoop& loop_;
    std::function<void()> onLost_;
    std::atomic<bool> isLost_ = false;
    int wakeUp_ = -1;
    std::unique_ptr<EventLoop::Watch> watch_;
    ScheduledCall telling_;
};

} // namespace velloran::platform::x11
