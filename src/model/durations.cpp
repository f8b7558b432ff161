#include "model/durations.h"

#include "base/text.h"

#include <cmath>

namespace velloran {

namespace {

/// Half the last shown digit: what is this near to one second shows as "1.00".
constexpr double singularTolerance = 0.005;

} // namespace

std::string formatSeconds(double seconds) {
    const bool hasFraction = std::fmod(seconds, 1.0) != 0.0;
    return fixedDecimal(seconds, hasFraction ? 2 : 0);
}

std::string formatInterval(double seconds) {
    const bool isSingular = std::abs(seconds - 1.0) < singularTolerance;
    return "1 click every " + fixedDecimal(seconds, 2) + " second" + (isSingular ? "" : "s");
}

} // namespace velloran
