#pragma once

#include <string>

namespace velloran {

/// The number of seconds alone: two decimals when there is a fraction, none otherwise. 5 → "5", 0.5 → "0.50".
std::string formatSeconds(double seconds);

/// The interval as a sentence: "1 click every 7.00 seconds".
std::string formatInterval(double seconds);

} // namespace velloran
