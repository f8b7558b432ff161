#pragma once

#include "model/RawValue.h"

#include <string_view>

namespace velloran {

/// When a run ends: only when it is stopped, or after a number of clicks.
enum class StopMode { manual, after_clicks };

/// The stored name: "manual" or "after_clicks".
std::string_view rawValue(StopMode mode);

template<>
std::optional<StopMode> fromRawValue(std::string_view text);

} // namespace velloran
