#pragma once

#include "base/fatal.h"

#include <string_view>

namespace velloran {

/// Ends the fuzzing run as a finding when a promise is broken.
inline void require(bool holds, std::string_view promise) {
    if (!holds) {
        fatalError(promise);
    }
}

} // namespace velloran
