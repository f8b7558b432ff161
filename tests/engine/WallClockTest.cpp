#include "engine/StoreTest.h"

#include <limits>

namespace velloran {

namespace {

/// What a run does when somebody sets the clock. Waiting goes by a clock that nobody sets; the schedule is in wall
/// time.
class WallClockTest : public StoreTest {
protected:
    void run(const AutoClickerConfig& config) {
        open(config);
        platform.loop.runDue();
        store->start();
    }

    void expectStopActs() {
        const std::size_t before = clicks().size();
        store->stop();
        EXPECT_EQ(status(), ClickerStatus::idle);
        advance(86400.0);
        EXPECT_EQ(clicks().size(), before);
    }
};

} // namespace

TEST_F(WallClockTest, SetForwardAnHourGivesOnePromptClickAndThenTheOldCadence) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(3600.0);
    advance(25.5);
    expectClicks({0.0, 7.0, 7.0, 14.0, 21.0, 28.0});
    expectStopActs();
}

TEST_F(WallClockTest, SetForwardByLessThanAnIntervalShortensOneWait) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(2.0);
    advance(20.0);
    expectClicks({0.0, 7.0, 12.0, 19.0});
}

TEST_F(WallClockTest, SetBackAnHourTheNextClickWaits) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(-3600.0);
    advance(3610.0); // 3613
    expectClicks({0.0, 7.0});
    advance(15.5);
    expectClicks({0.0, 7.0, 3614.0, 3621.0, 3628.0});
    expectStopActs();
}

TEST_F(WallClockTest, StopActsDuringTheLongWait) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(-3600.0);
    advance(100.0);
    expectClicks({0.0, 7.0});
    expectStopActs();
}

TEST_F(WallClockTest, CountedRunStillMakesExactlyItsClicks) {
    run(counted(5));
    advance(3.0);
    platform.loop.shiftWallClock(3600.0);
    advance(5.0);
    platform.loop.shiftWallClock(-3600.0);
    advance(10000.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(clicks().size(), 5U);
}

TEST_F(WallClockTest, SetForwardDuringTheCountdownEndsIt) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 60.0;
    run(config);
    advance(1.05);
    platform.loop.shiftWallClock(3600.0);
    advance(0.05);
    EXPECT_EQ(status(), ClickerStatus::running);
    expectClicks({1.1});
}

TEST_F(WallClockTest, SetBackDuringTheCountdownLengthensIt) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 2.0;
    run(config);
    advance(1.05);
    platform.loop.shiftWallClock(-100.0);
    advance(0.05);
    EXPECT_NEAR(*runtime().countdownRemaining, 100.9, 0.001);
    expectStopActs();
}

TEST_F(WallClockTest, SetBackDuringTheStillnessWaitLengthensIt) {
    AutoClickerConfig config = unlimited();
    config.requireStationaryMouse = true;
    run(config);
    advance(0.5);
    platform.loop.shiftWallClock(-100.0);
    advance(100.0);
    expectClicks({});
    advance(2.0);
    expectClicks({101.04});
}

namespace {

using WallClockDeathTest = WallClockTest;

} // namespace

TEST_F(WallClockDeathTest, WaitTooLongForItsUnitIsFatal) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(-2e10);
    EXPECT_DEATH(advance(4.0),
                 "^Fatal error: Double value cannot be converted to UInt64 because the result would be greater "
                 "than UInt64\\.max\n$");
}

TEST_F(WallClockDeathTest, WaitWithoutEndIsFatal) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(-std::numeric_limits<double>::infinity());
    EXPECT_DEATH(advance(4.0),
                 "^Fatal error: Double value cannot be converted to UInt64 because it is either infinite or NaN\n$");
}

} // namespace velloran
