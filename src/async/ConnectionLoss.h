#pragma once

#include "async/EventLoop.h"

#include <atomic>
#include <functional>
#include <memory>

namespace velloran {

/// Notices once that a connection to some server is gone, whoever sees it first, and tells it in a turn of the loop.
/// `report` and `isLost` may be called on any thread for as long as this object exists; the rest belongs to the loop's.
class ConnectionLoss {
public:
    /// `onLost` is called once, or not at all when this object ends before; it may end this object.
    ConnectionLoss(EventLoop& loop, std::function<void()> onLost);
    ConnectionLoss(const ConnectionLoss&) = delete;
    ConnectionLoss& operator=(const ConnectionLoss&) = delete;
    ~ConnectionLoss() = default;

    /// The connection is broken. Only the first report counts.
    void report();

    [[nodiscard]] bool isLost() const { return isLost_.load(std::memory_order_acquire); }

private:
    EventLoop& loop_;
    const std::shared_ptr<const std::function<void()>> onLost_;
    std::atomic<bool> isLost_ = false;
};

} // namespace velloran
