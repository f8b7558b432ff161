#include "base/saturated.h"

#include <gtest/gtest.h>

namespace velloran {

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr double most = std::numeric_limits<double>::max();

} // namespace

TEST(Saturated, AddsAndSubtracts) {
    EXPECT_EQ(saturatedAdd(std::int64_t{2}, std::int64_t{3}), 5);
    EXPECT_EQ(saturatedSubtract(std::int64_t{2}, std::int64_t{3}), -1);
    EXPECT_EQ(saturatedAdd(largest, smallest), -1);
    EXPECT_EQ(saturatedAdd(0.1, 0.05), 0.1 + 0.05);
    EXPECT_EQ(saturatedSubtract(0.1, 0.05), 0.1 - 0.05);
}

TEST(Saturated, StaysAtTheEndsOfTheIntegers) {
    EXPECT_EQ(saturatedAdd(largest, std::int64_t{1}), largest);
    EXPECT_EQ(saturatedAdd(largest, largest), largest);
    EXPECT_EQ(saturatedAdd(smallest, std::int64_t{-1}), smallest);
    EXPECT_EQ(saturatedSubtract(smallest, std::int64_t{1}), smallest);
    EXPECT_EQ(saturatedSubtract(std::int64_t{0}, smallest), largest);
    EXPECT_EQ(saturatedSubtract(largest, std::int64_t{-1}), largest);
}

TEST(Saturated, StaysFinite) {
    EXPECT_EQ(saturatedAdd(most, most), most);
    EXPECT_EQ(saturatedAdd(-most, -most), -most);
    EXPECT_EQ(saturatedSubtract(-most, most), -most);
    EXPECT_EQ(saturatedSubtract(most, -most), most);
}

} // namespace velloran
