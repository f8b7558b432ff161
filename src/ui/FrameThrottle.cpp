#include "ui/FrameThrottle.h"

#include <utility>

namespace velloran {

namespace {

/// One frame at 60 Hz.
constexpr std::uint64_t frame = 16'666'667;

} // namespace

FrameThrottle::FrameThrottle(EventLoop& loop, std::function<void()> function)
    : loop_(loop), function_(std::move(function)) {}

void FrameThrottle::request() {
    if (std::exchange(isPending_, true) || isFrameUsed_) {
        return;
    }
    call_ = ScheduledCall(loop_, loop_.post([this] { serve(); }));
}

void FrameThrottle::serve() {
    isPending_ = false;
    isFrameUsed_ = true;
    call_ = ScheduledCall(loop_, loop_.callAfter(frame, [this] {
        isFrameUsed_ = false;
        if (isPending_) {
            serve();
        }
    }));
    function_();
}

} // namespace velloran
