#include "base/checked.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

} // namespace

TEST(Checked, AddsAndSubtracts) {
    EXPECT_EQ(checkedAdd(2, 3), 5);
    EXPECT_EQ(checkedAdd(largest, 0), largest);
    EXPECT_EQ(checkedSubtract(2, 3), -1);
}

TEST(CheckedDeathTest, OverflowIsFatal) {
    EXPECT_DEATH(checkedAdd(largest, 1), "^Fatal error: Arithmetic overflow");
    EXPECT_DEATH(checkedSubtract(smallest, 1), "^Fatal error: Arithmetic overflow");
}

TEST(Checked, CutsRealsTowardZero) {
    EXPECT_EQ(checkedInt(2.9), 2);
    EXPECT_EQ(checkedInt(-2.9), -2);
    EXPECT_EQ(checkedInt(-0x1p63), smallest);
    EXPECT_EQ(checkedUInt64(2.9), 2U);
    EXPECT_EQ(checkedUInt64(-0.9), 0U);
    EXPECT_EQ(checkedUInt64(0x1p63), 0x8000000000000000U);
}

TEST(CheckedDeathTest, RealsThatFitNoSignedIntegerAreFatal) {
    EXPECT_DEATH(checkedInt(notANumber),
                 "^Fatal error: Double value cannot be converted to Int because it is either infinite or NaN\n");
    EXPECT_DEATH(checkedInt(infinity),
                 "^Fatal error: Double value cannot be converted to Int because it is either infinite or NaN\n");
    EXPECT_DEATH(
        checkedInt(-0x1.1p63),
        "^Fatal error: Double value cannot be converted to Int because the result would be less than Int.min\n");
    EXPECT_DEATH(
        checkedInt(0x1p63),
        "^Fatal error: Double value cannot be converted to Int because the result would be greater than Int.max\n");
}

TEST(CheckedDeathTest, RealsThatFitNoUnsignedIntegerAreFatal) {
    EXPECT_DEATH(checkedUInt64(notANumber),
                 "^Fatal error: Double value cannot be converted to UInt64 because it is either infinite or NaN\n");
    EXPECT_DEATH(
        checkedUInt64(-1.0),
        "^Fatal error: Double value cannot be converted to UInt64 because the result would be less than UInt64.min\n");
    EXPECT_DEATH(checkedUInt64(0x1p64), "^Fatal error: Double value cannot be converted to UInt64 because the result "
                                        "would be greater than UInt64.max\n");
}

} // namespace velloran
