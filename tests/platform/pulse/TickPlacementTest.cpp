#include "platform/pulse/TickPlacement.h"

#include <gtest/gtest.h>

namespace velloran::platform::pulse {

namespace {

constexpr std::int64_t millisecond = 1'000'000;
constexpr std::int64_t framesPerMillisecond = 48;
constexpr std::int64_t tickLength = 12 * framesPerMillisecond;

/// A stream of which frame 0 is heard at moment 0, and which the server has passed on 10 milliseconds ahead.
TickPlacement running() {
    TickPlacement placement(tickLength);
    placement.update({0, 0, 10 * framesPerMillisecond});
    return placement;
}

} // namespace

TEST(TickPlacement, KnowsNoPlaceBeforeTheFirstReport) {
    TickPlacement placement(tickLength);
    EXPECT_EQ(placement.place(0, 0), std::nullopt);
    EXPECT_EQ(placement.restOfTick(0, 0), std::nullopt);
}

TEST(TickPlacement, PutsATickBehindWhatTheServerHasPassedOn) {
    TickPlacement placement = running();
    const auto place = placement.place(0, 0);
    ASSERT_TRUE(place);
    EXPECT_GT(*place, 10 * framesPerMillisecond);
    EXPECT_LT(*place, 40 * framesPerMillisecond);
}

TEST(TickPlacement, KeepsTheDistancesBetweenTicks) {
    TickPlacement placement = running();
    const std::int64_t first = placement.place(0, 0).value();
    // Each is dealt with a little later than it was asked for.
    EXPECT_EQ(placement.place(10 * millisecond, 11 * millisecond), first + 10 * framesPerMillisecond);
    EXPECT_EQ(placement.place(20 * millisecond, 25 * millisecond), first + 20 * framesPerMillisecond);
    EXPECT_EQ(placement.place(220 * millisecond, 220 * millisecond), first + 220 * framesPerMillisecond);
}

TEST(TickPlacement, KeepsTheDistancesWhenTheServerPassesOnLess) {
    TickPlacement placement = running();
    const std::int64_t first = placement.place(0, 0).value();
    placement.update({5 * millisecond, 5 * framesPerMillisecond, 5 * framesPerMillisecond});
    EXPECT_EQ(placement.place(10 * millisecond, 10 * millisecond), first + 10 * framesPerMillisecond);
}

TEST(TickPlacement, DelaysTicksMoreWhenTheServerPassesOnMore) {
    TickPlacement placement = running();
    const std::int64_t first = placement.place(0, 0).value();
    placement.update({5 * millisecond, 5 * framesPerMillisecond, 105 * framesPerMillisecond});
    EXPECT_EQ(placement.place(10 * millisecond, 10 * millisecond), first + 100 * framesPerMillisecond);
}

TEST(TickPlacement, PrefersAnExactReportToALaterInexactOne) {
    TickPlacement placement = running();
    const std::int64_t first = placement.place(0, 0).value();
    placement.update({5 * millisecond, 40 * framesPerMillisecond, 50 * framesPerMillisecond, 12 * millisecond});
    EXPECT_EQ(placement.place(10 * millisecond, 10 * millisecond), first + 10 * framesPerMillisecond);
    // In the end an inexact one is better than none.
    placement.update({11'000 * millisecond, 0, 10 * framesPerMillisecond, 12 * millisecond});
    EXPECT_EQ(placement.place(11'000 * millisecond, 11'000 * millisecond), first + 15 * framesPerMillisecond);
}

TEST(TickPlacement, LetsLateTicksCatchUpOneByOne) {
    TickPlacement placement = running();
    const std::int64_t now = 100 * millisecond;
    const std::int64_t first = placement.place(50 * millisecond, now).value();
    const std::int64_t second = placement.place(60 * millisecond, now).value();
    const std::int64_t third = placement.place(70 * millisecond, now).value();
    EXPECT_GE(first, 110 * framesPerMillisecond);
    EXPECT_EQ(second - first, 5 * framesPerMillisecond);
    EXPECT_EQ(third - second, 5 * framesPerMillisecond);
    // By then it has caught up.
    const std::int64_t later = placement.place(200 * millisecond, 200 * millisecond).value();
    EXPECT_EQ(placement.place(210 * millisecond, 210 * millisecond), later + 10 * framesPerMillisecond);
    EXPECT_LT(later, 240 * framesPerMillisecond);
}

TEST(TickPlacement, GivesUpTicksThatComeTooLate) {
    TickPlacement placement = running();
    EXPECT_NE(placement.place(0, TickPlacement::longestDelay), std::nullopt);
    EXPECT_EQ(placement.place(0, TickPlacement::longestDelay + 1), std::nullopt);
}

TEST(TickPlacement, GivesUpTicksThatWouldQueueUpTooFar) {
    TickPlacement placement = running();
    int placed = 0;
    while (placement.place(0, 0)) {
        ++placed;
    }
    // A second in steps of five milliseconds, and the one at its start.
    EXPECT_EQ(placed, 201);
    EXPECT_NE(placement.place(500 * millisecond, 500 * millisecond), std::nullopt);
}

TEST(TickPlacement, SilencesTheRestOfATick) {
    TickPlacement placement = running();
    const std::int64_t place = placement.place(0, 0).value();
    const TickPlacement::Range rest{place + 8 * framesPerMillisecond, place + tickLength};
    EXPECT_EQ(placement.restOfTick(8 * millisecond, 8 * millisecond), rest);
}

TEST(TickPlacement, LeavesATickTheLengthThatTheNextOneWouldLeaveIt) {
    TickPlacement placement = running();
    const std::int64_t place = placement.place(0, 0).value();
    const TickPlacement::Range rest{place + 5 * framesPerMillisecond, place + tickLength};
    EXPECT_EQ(placement.restOfTick(2 * millisecond, 2 * millisecond), rest);
}

TEST(TickPlacement, SilencesNothingBehindATick) {
    TickPlacement placement = running();
    ASSERT_TRUE(placement.place(0, 0));
    EXPECT_EQ(placement.restOfTick(12 * millisecond, 12 * millisecond), std::nullopt);
    EXPECT_EQ(placement.restOfTick(900 * millisecond, 900 * millisecond), std::nullopt);
}

TEST(TickPlacement, SilencesNoTickThatHasNotBegun) {
    TickPlacement placement = running();
    const std::int64_t now = 100 * millisecond;
    for (const std::int64_t moment : {50, 60, 70, 80}) {
        ASSERT_TRUE(placement.place(moment * millisecond, now));
    }
    EXPECT_EQ(placement.restOfTick(now, now), std::nullopt);
}

} // namespace velloran::platform::pulse
