#include "base/Moment.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran {

namespace {

constexpr std::uint64_t endless = std::numeric_limits<std::uint64_t>::max();

} // namespace

TEST(Moment, LaterIsThatManyNanosecondsAfter) {
    EXPECT_EQ(later(Moment(), 5).time_since_epoch().count(), 5);
    EXPECT_EQ(later(Moment(std::chrono::nanoseconds(-7)), 5).time_since_epoch().count(), -2);
}

TEST(Moment, NothingIsLaterThanTheLastMoment) {
    EXPECT_EQ(later(Moment(), endless), Moment::max());
    EXPECT_EQ(later(Moment::max() - std::chrono::nanoseconds(1), 1), Moment::max());
    EXPECT_EQ(later(Moment::max() - std::chrono::nanoseconds(2), 1), Moment::max() - std::chrono::nanoseconds(1));
    EXPECT_EQ(later(Moment::max(), 0), Moment::max());
    EXPECT_EQ(later(Moment::min(), endless), Moment::max());
    EXPECT_EQ(later(Moment::min(), endless - 1), Moment::max() - std::chrono::nanoseconds(1));
}

TEST(Moment, BetweenTwoIsTheTimeThatIsStillToPass) {
    EXPECT_EQ(nanosecondsBetween(Moment(), later(Moment(), 5)), 5U);
    EXPECT_EQ(nanosecondsBetween(Moment(), Moment()), 0U);
    EXPECT_EQ(nanosecondsBetween(later(Moment(), 5), Moment()), 0U);
    EXPECT_EQ(nanosecondsBetween(Moment::min(), Moment::max()), endless);
    EXPECT_EQ(nanosecondsBetween(Moment(), Moment::min()), 0U);
}

} // namespace velloran
