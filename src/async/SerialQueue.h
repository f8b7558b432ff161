#pragma once

#include "base/Moment.h"

#include <functional>
#include <utility>

namespace velloran {

/// Does jobs one after the other, in the order in which they were handed over. Made by `EventLoop::makeSerialQueue`.
/// Its destruction waits until every job handed over before it is done; one that is not due yet is done at once then.
class SerialQueue {
public:
    SerialQueue() = default;
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    virtual ~SerialQueue() = default;

    /// Hands a job over and returns at once. A job must not throw.
    void async(std::function<void()> job) { asyncAt(Moment::min(), std::move(job)); }

    /// The same for a job that is done as soon as it is due, by `EventLoop::monotonicNow`. The order stays: whatever is
    /// handed over behind it waits for it.
    virtual void asyncAt(Moment due, std::function<void()> job) = 0;
};

} // namespace velloran
