#include "async/Task.h"

#include <utility>

namespace velloran {

namespace {

/// Makes the next step of a suspended body, whose frame the caller keeps alive.
void resume(std::coroutine_handle<> handle) {
    handle.resume();
}

} // namespace

Task::Frame::~Frame() {
    if (handle) {
        std::exchange(handle, nullptr).destroy();
    }
}

void Task::State::scheduleStep(std::shared_ptr<Frame> frame) {
    loop.post([frame = std::move(frame)] { resume(frame->handle); });
}

void Task::State::scheduleStepAfter(std::shared_ptr<Frame> frame, std::uint64_t nanoseconds) {
    waiting = frame;
    wait = loop.callAfter(nanoseconds, [this, frame = std::move(frame)] {
        // The frame holds the promise, and the promise this state.
        wait = EventLoop::CallId::none;
        resume(frame->handle);
    });
}

void Task::State::cancel() {
    if (isCancelled) {
        return;
    }
    isCancelled = true;
    if (wait == EventLoop::CallId::none) {
        return;
    }
    auto frame = waiting.lock();
    loop.cancel(std::exchange(wait, EventLoop::CallId::none));
    if (frame) {
        scheduleStep(std::move(frame));
    }
}

void Task::cancel() {
    state_->cancel();
}

bool Task::Cancellation::isRequested() const {
    return state_.isCancelled;
}

bool Task::isFinished() const {
    return state_->isFinished;
}

void Task::promise_type::Start::await_suspend(std::coroutine_handle<> handle) const {
    const auto owner = std::make_shared<Frame>();
    promise.frame = owner;
    promise.state->scheduleStep(owner);
    // Not before: when there is no memory for the step, the coroutine ends by itself, and must not be ended twice.
    owner->handle = handle;
}

void Task::promise_type::SleepAwaiter::await_suspend(std::coroutine_handle<>) const {
    promise.state->scheduleStepAfter(promise.frame.lock(), nanoseconds);
}

void Task::promise_type::YieldAwaiter::await_suspend(std::coroutine_handle<>) const {
    promise.state->scheduleStep(promise.frame.lock());
}

void Task::promise_type::return_void() {
    state->isFinished = true;
    if (const auto owner = frame.lock()) {
        owner->handle = nullptr;
    }
}

} // namespace velloran
