#pragma once

#include "base/Bytes.h"

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <string>

namespace velloran::platform::qt {

/// Nobody waits that long but in a test that fails.
inline constexpr std::chrono::seconds forEver{60};

/// A value that shows whether it is whole: every byte is the same, and the number says how many there are.
inline Bytes valueNumber(int number) {
    const std::size_t length = number % 2 == 0 ? 20 : 30'000;
    return std::to_string(number) + ':' + Bytes(length, static_cast<char>('a' + number % 26));
}

/// The number of a value that is whole; -1 for one that is not.
inline int numberOf(const Bytes& value) {
    const int number = std::atoi(value.c_str());
    return value == valueNumber(number) ? number : -1;
}

} // namespace velloran::platform::qt
