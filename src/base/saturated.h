#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace velloran {

/// The sum of two integers, or the nearest integer where it does not fit.
inline std::int64_t saturatedAdd(std::int64_t a, std::int64_t b) {
    using Limits = std::numeric_limits<std::int64_t>;
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        return b < 0 ? Limits::min() : Limits::max();
    }
    return sum;
}

/// The sum of two finite numbers, or the nearest finite number where it is not finite itself.
inline double saturatedAdd(double a, double b) {
    using Limits = std::numeric_limits<double>;
    return std::clamp(a + b, Limits::lowest(), Limits::max());
}

/// The difference of two integers, or the nearest integer where it does not fit.
inline std::int64_t saturatedSubtract(std::int64_t a, std::int64_t b) {
    using Limits = std::numeric_limits<std::int64_t>;
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        return b < 0 ? Limits::max() : Limits::min();
    }
    return difference;
}

/// The difference of two finite numbers, or the nearest finite number where it is not finite itself.
inline double saturatedSubtract(double a, double b) {
    return saturatedAdd(a, -b);
}

} // namespace velloran
