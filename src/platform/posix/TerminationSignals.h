#pragma once

#include "async/EventLoop.h"

#include <functional>
#include <memory>

namespace velloran::platform::posix {

/// Turns the signals that ask a program to end (terminate, interrupt, hang up) into calls on the event loop.
class TerminationSignals {
public:
    /// From now on those signals do not end the program any more. Programs that it starts hear them as usual. A hang-up
    /// that whoever started this program had ignored stays ignored. To be called once.
    static void hold();

    /// Calls `requested` in a turn of the loop once such signals have come, also those since `hold`, which comes first.
    TerminationSignals(EventLoop& loop, std::function<void()> requested);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    std::unique_ptr<EventLoop::Watch> watch_;
};

} // namespace velloran::platform::posix
