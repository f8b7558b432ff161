#include "platform/pulse/TickSample.h"

#include "tickData.h"

namespace velloran::platform::pulse {

std::span<const std::int16_t> tickSample() {
    return tickData;
}

} // namespace velloran::platform::pulse
