#pragma once

#include "async/EventLoop.h"

#include <functional>

namespace velloran {

/// Calls a function soon after it was asked for, but never twice within one frame: the first request after a quiet time
/// is served in the next turn of the loop, further ones together when the frame is over. Wakes nobody when nothing is
/// asked.
class FrameThrottle {
public:
    /// `loop` must outlive this object.
    FrameThrottle(EventLoop& loop, std::function<void()> function);
    FrameThrottle(const FrameThrottle&) = delete;
    FrameThrottle& operator=(const FrameThrottle&) = delete;

    void request();

private:
    void serve();

    EventLoop& loop_;
    const std::function<void()> function_;
    bool isPending_ = false;
    /// A call has been made in this frame.
    bool isFrameUsed_ = false;
    ScheduledCall call_;
};

} // namespace velloran
