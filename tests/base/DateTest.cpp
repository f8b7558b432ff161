#include "base/Date.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(Date, CountsSecondsFromTheReferenceDate) {
    constexpr Date date(12.5);
    EXPECT_EQ(date.secondsSinceReference(), 12.5);
    EXPECT_EQ(Date().secondsSinceReference(), 0.0);
}

TEST(Date, AddsAndSubtractsSeconds) {
    constexpr Date date(100.0);
    EXPECT_EQ(date + 2.5, Date(102.5));
    EXPECT_EQ((date + 2.5) - date, 2.5);
    EXPECT_LT(date, date + 0.001);
}

} // namespace velloran
