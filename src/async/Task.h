#pragma once

#include "async/EventLoop.h"

#include <coroutine>
#include <cstdint>
#include <memory>

namespace velloran {

/// Handle of a cancellable coroutine that runs on the thread of an event loop.
///
/// A function with this result and an `EventLoop&` as its first parameter is such a coroutine. Calling it schedules its
/// body for a later turn of that loop. Inside, `co_await taskSleep(nanoseconds)` waits, `co_await taskYield()` lets the
/// loop do what else is due, and `co_await taskCancellation()` gives what answers whether the task has been cancelled.
/// Cancellation is a request: the body notices it where it asks, and a sleep under way ends early, in a later turn.
/// Losing every handle cancels nothing. A body that is still waiting when its loop ends is destroyed with all it holds.
class Task {
    struct Frame;
    struct State;

public:
    struct promise_type;

    /// Awaited by a task: a sleep of `nanoseconds`, which ends early when the task is cancelled.
    struct Sleep {
        std::uint64_t nanoseconds;
    };

    /// Awaited by a task: goes on in a later turn of the loop, without letting time pass.
    struct Yield {};

    /// Awaited by a task: gives its `Cancellation`, without waiting.
    struct CancellationQuery {};

    /// Tells the body whether its task has been cancelled. A value of its own, so that conditions need not await: the
    /// compiler destroys what is awaited behind && and || at the wrong time.
    class Cancellation {
    public:
        [[nodiscard]] bool isRequested() const;

    private:
        friend struct promise_type;

        explicit Cancellation(const State& state) : state_(state) {}

        const State& state_;
    };

    /// Asks the task to end. Never runs any of its body before returning, so it may be called from inside that body.
    void cancel();

    /// Whether the body has come to its end.
    [[nodiscard]] bool isFinished() const;

private:
    explicit Task(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

/// A sleep for `co_await` in a task.
inline Task::Sleep taskSleep(std::uint64_t nanoseconds) {
    return {nanoseconds};
}

/// A turn for the loop, for `co_await` in a task.
inline Task::Yield taskYield() {
    return {};
}

/// The cancellation of the task that awaits this.
inline Task::CancellationQuery taskCancellation() {
    return {};
}

/// Owns a coroutine while it is suspended; the pending call of the loop owns this. Whoever drops that call without
/// making it destroys the coroutine.
struct Task::Frame {
    Frame() = default;
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    ~Frame();

    std::coroutine_handle<> handle;
};

struct Task::State {
    explicit State(EventLoop& eventLoop) : loop(eventLoop) {}

    /// Schedules the next step of the body, at once or after a wait.
    void scheduleStep(std::shared_ptr<Frame> frame);
    void scheduleStepAfter(std::shared_ptr<Frame> frame, std::uint64_t nanoseconds);
    void cancel();

    EventLoop& loop;
    bool isCancelled = false;
    bool isFinished = false;
    /// The wait of a sleep under way, and the body that waits.
    EventLoop::CallId wait = EventLoop::CallId::none;
    std::weak_ptr<Frame> waiting;
};

struct Task::promise_type {
    /// The loop is the coroutine's first argument.
    template<typename... Arguments>
    explicit promise_type(EventLoop& loop, const Arguments&...) : state(std::make_shared<State>(loop)) {}

    /// Starts in a later turn: the first suspension hands the frame to the loop.
    struct Start {
        promise_type& promise;

        [[nodiscard]] bool await_ready() const noexcept { return false; }

        void await_suspend(std::coroutine_handle<> handle) const;

        void await_resume() const noexcept {}
    };

    struct SleepAwaiter {
        promise_type& promise;
        std::uint64_t nanoseconds;

        [[nodiscard]] bool await_ready() const noexcept { return promise.state->isCancelled; }

        void await_suspend(std::coroutine_handle<>) const;

        void await_resume() const noexcept {}
    };

    struct YieldAwaiter {
        promise_type& promise;

        [[nodiscard]] bool await_ready() const noexcept { return false; }

        void await_suspend(std::coroutine_handle<>) const;

        void await_resume() const noexcept {}
    };

    struct QueryAwaiter {
        const State& state;

        [[nodiscard]] bool await_ready() const noexcept { return true; }

        void await_suspend(std::coroutine_handle<>) const noexcept {}

        [[nodiscard]] Cancellation await_resume() const noexcept { return Cancellation(state); }
    };

    Task get_return_object() { return Task(state); }

    Start initial_suspend() { return {*this}; }

    // The frame goes away by itself at the end of the body; nothing else may own it then.
    std::suspend_never final_suspend() noexcept { return {}; }

    void return_void();

    // Exceptions are bugs here.
    [[noreturn]] void unhandled_exception() noexcept { std::terminate(); }

    SleepAwaiter await_transform(Sleep sleep) { return {*this, sleep.nanoseconds}; }

    YieldAwaiter await_transform(Yield) { return {*this}; }

    QueryAwaiter await_transform(CancellationQuery) const { return {*state}; }

    std::shared_ptr<State> state;
    std::weak_ptr<Frame> frame;
};

} // namespace velloran
