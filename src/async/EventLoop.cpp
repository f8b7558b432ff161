#include "async/EventLoop.h"

#include <utility>

namespace velloran {

EventLoop::Watch::~Watch() = default;
EventLoop::~EventLoop() = default;

ScheduledCall::ScheduledCall(EventLoop& loop, EventLoop::CallId call) : loop_(&loop), call_(call) {}

ScheduledCall::ScheduledCall(ScheduledCall&& other) noexcept
    : loop_(std::exchange(other.loop_, nullptr)), call_(std::exchange(other.call_, EventLoop::CallId::none)) {}

ScheduledCall& ScheduledCall::operator=(ScheduledCall&& other) noexcept {
    if (this != &other) {
        cancel();
        loop_ = std::exchange(other.loop_, nullptr);
        call_ = std::exchange(other.call_, EventLoop::CallId::none);
    }
    return *this;
}

ScheduledCall::~ScheduledCall() {
    cancel();
}

void ScheduledCall::cancel() {
    if (EventLoop* const loop = std::exchange(loop_, nullptr)) {
        loop->cancel(std::exchange(call_, EventLoop::CallId::none));
    }
}

} // namespace velloran
