#pragma once

#include "base/Moment.h"

namespace velloran {

/// A timer of the system on the clock that nobody sets: a descriptor that becomes readable when its moment has come. It
/// is as exact as the system can be; timers that a wait brings along may be late by the thread's slack.
class MonotonicTimer {
public:
    /// What `take` does before the moment has come.
    enum class Reading { waits, returns };

    /// Ends the program with a fatal error when the system grants no timer.
    explicit MonotonicTimer(Reading reading);
    MonotonicTimer(const MonotonicTimer&) = delete;
    MonotonicTimer& operator=(const MonotonicTimer&) = delete;
    ~MonotonicTimer();

    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// From now on this is its moment, and the only one. One that has passed comes at once.
    void arm(Moment moment) const;

    /// It has no moment any more.
    void disarm() const;

    /// Takes note that the moment has come: the descriptor is not readable any more. Of a timer that waits this is the
    /// way to sleep until then.
    void take() const;

private:
    const int descriptor_;
};

} // namespace velloran
