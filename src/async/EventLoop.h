#pragma once

#include "base/Date.h"
#include "base/Moment.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velloran {

class SerialQueue;

/// The one source of time, waiting and turns for the whole program. All functions but one are called on the loop's own
/// thread, and everything handed to it is called there.
class EventLoop {
public:
    using Function = std::function<void()>;

    /// Names a call that has not happened yet.
    enum class CallId : std::uint64_t { none = 0 };

    /// What a file descriptor is watched for.
    enum class Readiness { readable, writable };

    /// Keeps a file descriptor watched for as long as it exists. To be destroyed before the descriptor is closed; from
    /// inside its own call as well, which goes on to its end and is the last.
    class Watch {
    public:
        Watch() = default;
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;
        virtual ~Watch();
    };

    EventLoop() = default;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    virtual ~EventLoop();

    /// The wall clock. It may be set forward and back while the program runs.
    [[nodiscard]] virtual Date now() const = 0;

    /// The clock that nobody sets, by which waiting goes.
    [[nodiscard]] virtual Moment monotonicNow() const = 0;

    /// Calls `function` in a later turn. Posted functions are called in the order in which they were posted.
    virtual CallId post(Function function) = 0;

    /// Calls `function` in a later turn; for every thread, while the loop is sure to exist. Functions that one thread
    /// posts are called in their order. Those left when the loop ends are destroyed on its thread.
    virtual void postFromAnyThread(Function function) = 0;

    /// Calls `function` once, when that many nanoseconds have passed. Waiting goes by a clock that nobody sets; calls
    /// that are due at the same time happen in the order in which they were asked for.
    virtual CallId callAfter(std::uint64_t nanoseconds, Function function) = 0;

    /// The call does not happen any more, and its function is destroyed. No effect on a call that has happened, is
    /// happening, or is `none`.
    virtual void cancel(CallId call) = 0;

    /// Calls `function` again and again while `fileDescriptor` is ready, until the result is destroyed. One descriptor
    /// may have a watch of each kind.
    [[nodiscard]] virtual std::unique_ptr<Watch> watch(int fileDescriptor, Readiness readiness, Function function) = 0;

    /// Somebody else needs the machine at that moment, for less than a millisecond: what this thread does all by
    /// itself, and can be a little later without anybody seeing it, keeps out of the way. The last moment asked for
    /// counts.
    virtual void keepQuiet(Moment moment) = 0;

    /// A queue that does its jobs one after the other, in order, without making this loop wait.
    [[nodiscard]] virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) = 0;
};

/// One second in the unit of `EventLoop::callAfter`.
inline constexpr std::uint64_t nanosecondsPerSecond = 1'000'000'000;

/// Cancels its call when it is destroyed or assigned over.
class ScheduledCall {
public:
    ScheduledCall() = default;
    ScheduledCall(EventLoop& loop, EventLoop::CallId call);
    ScheduledCall(const ScheduledCall&) = delete;
    ScheduledCall& operator=(const ScheduledCall&) = delete;
    ScheduledCall(ScheduledCall&& other) noexcept;
    ScheduledCall& operator=(ScheduledCall&& other) noexcept;
    ~ScheduledCall();

    /// Cancels now.
    void cancel();

private:
    EventLoop* loop_ = nullptr;
    EventLoop::CallId call_ = EventLoop::CallId::none;
};

} // namespace velloran
