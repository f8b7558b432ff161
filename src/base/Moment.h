#pragma once

#include <chrono>
#include <cstdint>

namespace velloran {

/// A point in time on the clock by which waiting goes: nobody sets it, and it stands still while the machine sleeps.
using Moment = std::chrono::steady_clock::time_point;

/// That many nanoseconds after `moment`, or the last moment there is.
constexpr Moment later(Moment moment, std::uint64_t nanoseconds) {
    using Nanoseconds = std::chrono::nanoseconds;
    const auto room = static_cast<std::uint64_t>(Nanoseconds::max().count()) -
                      static_cast<std::uint64_t>(Nanoseconds(moment.time_since_epoch()).count());
    return nanoseconds < room ? moment + Nanoseconds(static_cast<Nanoseconds::rep>(nanoseconds)) : Moment::max();
}

/// Nanoseconds from `earlier` to `moment`, and none when that is not later.
constexpr std::uint64_t nanosecondsBetween(Moment earlier, Moment moment) {
    return moment > earlier ? static_cast<std::uint64_t>(std::chrono::nanoseconds(moment - earlier).count()) : 0;
}

} // namespace velloran
