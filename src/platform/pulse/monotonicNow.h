#pragma once

#include <chrono>
#include <cstdint>

namespace velloran::platform::pulse {

/// The moment in nanoseconds of a clock that is never set. Any thread.
inline std::int64_t monotonicNow() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace velloran::platform::pulse
