#include "async/MonotonicTimer.h"

#include "base/fatal.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>

namespace velloran {

namespace {

/// Zero stands for no moment.
void set(int descriptor, std::chrono::nanoseconds sinceBoot) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceBoot);
    itimerspec when{};
    when.it_value.tv_sec = static_cast<time_t>(seconds.count());
    when.it_value.tv_nsec = static_cast<long>((sinceBoot - seconds).count());
    timerfd_settime(descriptor, TFD_TIMER_ABSTIME, &when, nullptr);
}

} // namespace

MonotonicTimer::MonotonicTimer(Reading reading)
    : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | (reading == Reading::returns ? TFD_NONBLOCK : 0))) {
    if (descriptor_ < 0) {
        fatalError("The system grants no timer");
    }
}

MonotonicTimer::~MonotonicTimer() {
    close(descriptor_);
}

void MonotonicTimer::arm(Moment moment) const {
    set(descriptor_, std::max(std::chrono::nanoseconds(moment.time_since_epoch()), std::chrono::nanoseconds(1)));
}

void MonotonicTimer::disarm() const {
    set(descriptor_, std::chrono::nanoseconds(0));
}

void MonotonicTimer::take() const {
    std::uint64_t expirations = 0;
    // Nothing to read means that the timer was set anew meanwhile.
    [[maybe_unused]] const auto count = read(descriptor_, &expirations, sizeof expirations);
}

} // namespace velloran
