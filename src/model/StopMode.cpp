#include "model/StopMode.h"

namespace velloran {

std::string_view rawValue(StopMode mode) {
    return mode == StopMode::manual ? "manual" : "after_clicks";
}

template<>
std::optional<StopMode> fromRawValue(std::string_view text) {
    for (const StopMode mode : {StopMode::manual, StopMode::after_clicks}) {
        if (rawValue(mode) == text) {
            return mode;
        }
    }
    return std::nullopt;
}

} // namespace velloran
