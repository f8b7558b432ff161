#pragma once

#include "async/EventLoop.h"

#include <functional>
#include <memory>

namespace velloran::platform::posix {

/// Turns the signals that ask a program to end (terminate, interrupt, hang up) into calls on the event loop.
class TerminationSignals {
public:
    /// Holds those signals back in the calling thread and in all threads made after, but not in processes that are
    /// started. To be called once, before any other thread exists.
    static void block();

    /// Calls `requested` in a turn of the loop for each such signal. `block` comes first.
    TerminationSignals(EventLoop& loop, std::function<void()> requested);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    int descriptor_ = -1;
    std::unique_ptr<EventLoop::Watch> watch_;
};

} // namespace velloran::platform::posix
