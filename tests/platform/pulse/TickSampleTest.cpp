#include "platform/pulse/TickSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace velloran::platform::pulse {

TEST(TickSample, IsShort) {
    EXPECT_GE(tickSample().size(), tickRate * 8 / 1000);
    EXPECT_LE(tickSample().size(), tickRate * 20 / 1000);
}

TEST(TickSample, IsAudibleAndNotClipped) {
    const auto tick = tickSample();
    const auto loudest = std::max_element(tick.begin(), tick.end(),
                                          [](int left, int right) { return std::abs(left) < std::abs(right); });
    EXPECT_GT(std::abs(static_cast<int>(*loudest)), 3'000);
    EXPECT_LT(std::abs(static_cast<int>(*loudest)), 32'000);
    // Most of it at once: a click, not a swell.
    EXPECT_LT(loudest - tick.begin(), tickRate * 3 / 1000);
}

TEST(TickSample, BeginsAndEndsInSilenceWithoutDirectCurrent) {
    const auto tick = tickSample();
    EXPECT_LT(std::abs(static_cast<int>(tick.front())), 100);
    EXPECT_LT(std::abs(static_cast<int>(tick.back())), 100);
    const long sum = std::accumulate(tick.begin(), tick.end(), 0L);
    EXPECT_LT(std::abs(sum / static_cast<long>(tick.size())), 100);
}

} // namespace velloran::platform::pulse
