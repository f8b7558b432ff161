#pragma once

#include <functional>

namespace velloran {

/// Does jobs one after the other, in the order in which they were handed over. Made by `EventLoop::makeSerialQueue`.
/// Its destruction waits until every job handed over before it is done.
class SerialQueue {
public:
    SerialQueue() = default;
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    virtual ~SerialQueue() = default;

    /// Hands a job over and returns at once. A job must not throw.
    virtual void async(std::function<void()> job) = 0;
};

} // namespace velloran
