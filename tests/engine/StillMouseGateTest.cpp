#include "engine/StoreTest.h"

#include <string>
#include <vector>

namespace velloran {

namespace {

class StillMouseGateTest : public StoreTest {
protected:
    void run(AutoClickerConfig config, double stationarySeconds = 1.0) {
        config.requireStationaryMouse = true;
        config.stationarySeconds = stationarySeconds;
        open(config);
        platform.loop.runDue();
        // Every reading sees the pointer where it is at that moment.
        platform.onPointerRead = [this] {
            platform.loop.spend(readingTime);
            readings.push_back(static_cast<double>(platform.loop.elapsed()) / 1e9);
            if (isMoving) {
                platform.pointer = platform::Point{platform.pointer->x + 10.0, platform.pointer->y};
            }
        };
        store->start();
    }

    bool isMoving = false;
    /// How long a reading takes, in seconds.
    double readingTime = 0.0;
    std::vector<double> readings;
};

} // namespace

TEST_F(StillMouseGateTest, FirstClickComesAtTheFirstPollAfterTheStillPeriod) {
    run(unlimited());
    advance(1.039);
    expectClicks({});
    EXPECT_TRUE(runtime().stationaryWaitActive);
    advance(0.001);
    expectClicks({1.04});
    EXPECT_FALSE(runtime().stationaryWaitActive);
}

TEST_F(StillMouseGateTest, PollsEveryEightyMilliseconds) {
    run(unlimited());
    advance(1.04);
    ASSERT_EQ(readings.size(), 14U);
    for (std::size_t poll = 0; poll < readings.size(); ++poll) {
        EXPECT_NEAR(readings[poll], 0.08 * static_cast<double>(poll), 1e-9);
    }
}

TEST_F(StillMouseGateTest, StillPointerIsClickedAnIntervalApart) {
    run(unlimited());
    advance(30.0);
    expectClicks({1.04, 8.04, 15.04, 22.04, 29.04});
    EXPECT_EQ(readings.size(), 14U + 4U) << "one look before each later click, and none while waiting for its time";
}

TEST_F(StillMouseGateTest, StopActsBetweenTheClicksOfAStillPointer) {
    run(unlimited());
    advance(10.0);
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(60.0);
    expectClicks({1.04, 8.04});
}

TEST_F(StillMouseGateTest, StillPresetDoesNotHangTheDesktop) {
    run(Preset::builtIns().at(2).config, 5.0);
    advance(3600.0);
    EXPECT_EQ(clicks().size(), 120U);
    EXPECT_NEAR(clicks().front(), 3.0 + 5.04, 1e-5);
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
}

TEST_F(StillMouseGateTest, MovingPointerHoldsTheLoopInItsPoll) {
    isMoving = true;
    run(counted(3));
    advance(100.0);
    expectClicks({});
    EXPECT_TRUE(runtime().stationaryWaitActive);
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().message(), "Waiting for mouse to remain still");
    EXPECT_EQ(readings.size(), 1251U);
}

TEST_F(StillMouseGateTest, OnceStillTheClickFollowsAtOnceAndTheNextAnIntervalLater) {
    isMoving = true;
    run(unlimited());
    advance(100.0); // the poll at this moment sees the pointer move for the last time
    isMoving = false;
    advance(1.039);
    expectClicks({});
    advance(0.001);
    expectClicks({101.04});
    EXPECT_FALSE(runtime().stationaryWaitActive);
    advance(20.0);
    expectClicks({101.04, 108.04, 115.04});
}

TEST_F(StillMouseGateTest, PointerThatMovesDuringTheIntervalIsNotClickedWhileItMoves) {
    run(unlimited());
    advance(3.0);
    isMoving = true;
    advance(9.0); // the last poll on the way, at 11.96, still sees movement
    expectClicks({1.04});
    EXPECT_TRUE(runtime().stationaryWaitActive);
    isMoving = false;
    advance(0.999);
    expectClicks({1.04});
    advance(0.001);
    expectClicks({1.04, 13.0});
}

TEST_F(StillMouseGateTest, PointerThatMovedDuringTheIntervalWaitsOutTheStillPeriod) {
    run(unlimited());
    advance(3.0);
    platform.pointer = platform::Point{900.0, 700.0};
    advance(5.04); // the look at 8.04 finds it elsewhere
    expectClicks({1.04});
    EXPECT_TRUE(runtime().stationaryWaitActive);
    advance(1.04);
    expectClicks({1.04, 9.08});
    advance(7.0);
    expectClicks({1.04, 9.08, 16.08});
}

TEST_F(StillMouseGateTest, LongWaitIsNotFollowedByABurst) {
    run(unlimited(0.5));
    advance(2.0); // 1.04, 1.54
    isMoving = true;
    advance(600.0);
    isMoving = false;
    advance(3.0);
    const std::vector<double> times = clicks();
    ASSERT_GE(times.size(), 5U);
    EXPECT_NEAR(times[0], 1.04, 1e-6);
    EXPECT_NEAR(times[1], 1.54, 1e-6);
    EXPECT_NEAR(times[2], 603.0, 1e-6) << "the last movement was seen at 601.96";
    for (std::size_t click = 3; click < times.size(); ++click) {
        EXPECT_NEAR(times[click] - times[click - 1], 0.5, 1e-6);
    }
}

TEST_F(StillMouseGateTest, ScheduleMovesOnlyWhereAPollSaidNo) {
    readingTime = 0.001;
    run(unlimited(0.1), 0.1);
    advance(5.0);
    const std::vector<double> times = clicks();
    ASSERT_EQ(times.size(), 49U);
    // Polls at 0, 0.081 and 0.162 take a millisecond each; the third says yes, and the schedule starts from its end.
    for (std::size_t click = 1; click < times.size(); ++click) {
        EXPECT_NEAR(times[click], 0.164 + 0.1 * static_cast<double>(click), 1e-5)
            << "each look makes its own click late, and no other: no drift while the mouse is still";
    }
}

TEST_F(StillMouseGateTest, NextClickKeepsItsTimeDuringTheWait) {
    run(unlimited());
    advance(2.0);
    const auto due = runtime().nextClickAt;
    ASSERT_NE(due, std::nullopt);
    isMoving = true;
    advance(20.0);
    EXPECT_TRUE(runtime().stationaryWaitActive);
    EXPECT_EQ(runtime().nextClickAt, due);
}

TEST_F(StillMouseGateTest, LastClickIsFollowedByCompletionWithoutAnotherLook) {
    run(counted(2));
    advance(8.04);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_FALSE(runtime().stationaryWaitActive);
    const std::size_t looks = readings.size();
    advance(60.0);
    EXPECT_EQ(readings.size(), looks);
    expectClicks({1.04, 8.04});
}

TEST_F(StillMouseGateTest, FlagIsClearedByStopAndNotByTheCancelledLoop) {
    isMoving = true;
    run(unlimited());
    advance(1.0);
    std::vector<bool> flags;
    const Subscription watching = store->runtime().stream().subscribe(
        [&](const AutoClickerRuntime& record) { flags.push_back(record.stationaryWaitActive); });
    store->stop();
    EXPECT_EQ(flags, (std::vector<bool>{true, false}));
    advance(10.0);
    EXPECT_EQ(flags.size(), 2U) << "the loop that ended touched nothing";
    EXPECT_FALSE(runtime().stationaryWaitActive);
}

TEST_F(StillMouseGateTest, StopDuringTheWaitEndsThePolls) {
    isMoving = true;
    run(unlimited());
    advance(1.0);
    store->stop();
    const std::size_t looks = readings.size();
    advance(10.0);
    EXPECT_EQ(readings.size(), looks);
}

TEST_F(StillMouseGateTest, EveryStartForgetsWhatWasSeenBefore) {
    run(unlimited());
    advance(60.0);
    const std::size_t before = clicks().size();
    store->start();
    advance(1.039);
    EXPECT_EQ(clicks().size(), before);
    advance(0.001);
    EXPECT_EQ(clicks().size(), before + 1);
}

TEST_F(StillMouseGateTest, UnknownPointerPositionNeverClicks) {
    run(unlimited());
    platform.pointer.reset();
    advance(600.0);
    expectClicks({});
    EXPECT_TRUE(runtime().stationaryWaitActive);
}

TEST_F(StillMouseGateTest, CountdownComesFirst) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 2.0;
    run(config);
    advance(1.99);
    EXPECT_TRUE(readings.empty());
    EXPECT_FALSE(runtime().stationaryWaitActive);
    advance(1.05);
    expectClicks({3.04});
}

TEST_F(StillMouseGateTest, GateThatIsOffNeverLooksAtThePointer) {
    open(counted(3));
    platform.onPointerRead = [] { FAIL() << "nobody needs the position"; };
    store->start();
    advance(20.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    platform.onPointerRead = nullptr;
}

} // namespace velloran
