#pragma once

#include <cstdint>
#include <span>

namespace velloran::platform::pulse {

/// Frames per second of the tick; a frame is one sample.
inline constexpr std::uint32_t tickRate = 48'000;

/// The samples of the tick, from its start to its end.
std::span<const std::int16_t> tickSample();

} // namespace velloran::platform::pulse
