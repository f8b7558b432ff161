#pragma once

#include "base/fatal.h"

#include <cmath>
#include <cstdint>

namespace velloran {

/// The sum of two integers. Overflow is a fatal error.
inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        fatalError("Arithmetic overflow in an addition");
    }
    return sum;
}

/// The difference of two integers. Overflow is a fatal error.
inline std::int64_t checkedSubtract(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        fatalError("Arithmetic overflow in a subtraction");
    }
    return difference;
}

/// The real number cut to a signed integer, toward zero. A number that does not fit is a fatal error.
inline std::int64_t checkedInt(double value) {
    if (!std::isfinite(value)) {
        fatalError("Double value cannot be converted to Int because it is either infinite or NaN");
    }
    // -2^63 is a double, 2^63 - 1 is not: the bounds are written as the nearest doubles that fail.
    if (value < -0x1p63) {
        fatalError("Double value cannot be converted to Int because the result would be less than Int.min");
    }
    if (value >= 0x1p63) {
        fatalError("Double value cannot be converted to Int because the result would be greater than Int.max");
    }
    return static_cast<std::int64_t>(value);
}

/// The real number cut to an unsigned integer, toward zero (so everything above -1 is accepted). A number that does not
/// fit is a fatal error.
inline std::uint64_t checkedUInt64(double value) {
    if (!std::isfinite(value)) {
        fatalError("Double value cannot be converted to UInt64 because it is either infinite or NaN");
    }
    if (value <= -1.0) {
        fatalError("Double value cannot be converted to UInt64 because the result would be less than UInt64.min");
    }
    if (value >= 0x1p64) {
        fatalError("Double value cannot be converted to UInt64 because the result would be greater than UInt64.max");
    }
    // A negative fraction cuts to zero; converting it directly would be undefined.
    return value < 0.0 ? 0 : static_cast<std::uint64_t>(value);
}

} // namespace velloran
