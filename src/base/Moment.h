#pragma once

#include <chrono>
#include <cstdint>

namespace velloran {

/// A point in time on the clock by which waiting goes: nobody sets it, and it stands still while the machine sleeps.
using Moment = std::chrono::steady_clock::time_point;

/// Nanoseconds since the clock began, where nothing overflows: modulo 2^64.
constexpr std::uint64_t moduloCount(Moment moment) {
    return static_cast<std::uint64_t>(std::chrono::nanoseconds(moment.time_since_epoch()).count());
}

/// That many nanoseconds after `moment`, or the last moment there is.
constexpr Moment later(Moment moment, std::uint64_t nanoseconds) {
    using Nanoseconds = std::chrono::nanoseconds;
    if (nanoseconds >= moduloCount(Moment::max()) - moduloCount(moment)) {
        return Moment::max();
    }
    return Moment(Nanoseconds(static_cast<Nanoseconds::rep>(moduloCount(moment) + nanoseconds)));
}

/// Nanoseconds from `earlier` to `moment`, and none when that is not later.
constexpr std::uint64_t nanosecondsBetween(Moment earlier, Moment moment) {
    return moment > earlier ? moduloCount(moment) - moduloCount(earlier) : 0;
}

} // namespace velloran
