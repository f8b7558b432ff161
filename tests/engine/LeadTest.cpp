#include "engine/StoreTest.h"

#include <chrono>
#include <optional>
#include <vector>

// Clicks are handed over ahead of time: counted then, and posted when they are due.

namespace velloran {

namespace {

class LeadTest : public StoreTest {
protected:
    /// So long before it is due a click has been handed over.
    static constexpr double shortly = 0.002;
    /// So long before it is due a click has not been handed over yet.
    static constexpr double earlier = 0.005;

    void run(const AutoClickerConfig& config) {
        open(config);
        platform.loop.runDue();
        store->start();
    }

    /// Goes on to the moment at which the second click has been handed over, and not posted.
    void runUntilHandedOver(const AutoClickerConfig& config) {
        run(config);
        advance(7.0 - shortly);
        ASSERT_EQ(runtime().clicksCompleted, 2);
        expectClicks({0.0});
    }
};

} // namespace

TEST_F(LeadTest, ClickIsHandedOverAheadOfTimeAndPostedWhenItIsDue) {
    run(unlimited());
    advance(7.0 - earlier);
    EXPECT_EQ(runtime().clicksCompleted, 1);
    advance(earlier - shortly);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    expectClicks({0.0});
    advance(14.0);
    expectClicks({0.0, 7.0, 14.0});
}

TEST_F(LeadTest, MomentAtWhichItIsDueIsKeptQuiet) {
    run(unlimited());
    const Moment first = platform.loop.monotonicNow();
    advance(7.0 - earlier);
    EXPECT_EQ(platform.loop.quietMoment(), first);
    advance(earlier - shortly);
    EXPECT_EQ(platform.loop.quietMoment(), first + std::chrono::seconds(7));
}

TEST_F(LeadTest, ShortestIntervalLeavesRoomForIt) {
    run(unlimited(AutoClickerConfig::intervalMin));
    advance(0.055);
    expectClicks({0.0, 0.01, 0.02, 0.03, 0.04, 0.05});
    EXPECT_EQ(runtime().clicksCompleted, 6) << "the next one is more than half an interval away";
    advance(0.003);
    EXPECT_EQ(runtime().clicksCompleted, 7);
    expectClicks({0.0, 0.01, 0.02, 0.03, 0.04, 0.05});
}

TEST_F(LeadTest, FirstClickIsPostedAsItIsHandedOver) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 2.0;
    run(config);
    advance(2.0 - shortly);
    EXPECT_EQ(runtime().clicksCompleted, 0);
    advance(shortly);
    EXPECT_EQ(runtime().clicksCompleted, 1);
    expectClicks({2.0});
}

TEST_F(LeadTest, LastClickIsPostedAsItIsHandedOverAndCompletionFollows) {
    run(counted(3));
    std::optional<std::uint64_t> completed;
    const Subscription watching = store->runtime().stream().subscribe([&](const AutoClickerRuntime& record) {
        if (record.status == ClickerStatus::completed) {
            completed = platform.loop.elapsed();
        }
    });
    advance(7.0 - shortly);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    advance(7.0);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_EQ(status(), ClickerStatus::running);
    advance(1.0);
    expectClicks({0.0, 7.0, 14.0});
    EXPECT_EQ(completed, platform.flushTimes.back());
}

TEST_F(LeadTest, AfterAStopTheOneHandedOverFollowsAndNoOther) {
    runUntilHandedOver(unlimited());
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(60.0);
    expectClicks({0.0, 7.0});
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(LeadTest, StopBeforeTheHandOverIsAStopBeforeTheClick) {
    run(unlimited());
    advance(7.0 - earlier);
    store->stop();
    advance(60.0);
    expectClicks({0.0});
    EXPECT_EQ(runtime().clicksCompleted, 1);
}

TEST_F(LeadTest, NewRunLetsTheOneHandedOverFollowAndDoesNotCountIt) {
    runUntilHandedOver(unlimited());
    store->start();
    advance(7.5);
    expectClicks({0.0, 7.0, 7.0, 14.0 - shortly});
    EXPECT_EQ(runtime().clicksCompleted, 2);
}

TEST_F(LeadTest, ClickHandedOverIsPostedThoughTheClicksAreLost) {
    runUntilHandedOver(unlimited());
    platform.desktop.set({});
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(60.0);
    expectClicks({0.0, 7.0});
}

TEST_F(LeadTest, ClickHandedOverIsPostedAtOnceWhereTheStoreEnds) {
    runUntilHandedOver(unlimited());
    store->stop();
    platform.loop.runDue();
    store.reset();
    expectClicks({0.0, 7.0 - shortly});
}

TEST_F(LeadTest, StillMouseRuleHasNone) {
    AutoClickerConfig config = unlimited();
    config.requireStationaryMouse = true;
    run(config);
    advance(8.04 - shortly);
    EXPECT_EQ(runtime().clicksCompleted, 1);
    platform.pointer = platform::Point{900.0, 700.0};
    advance(shortly);
    expectClicks({1.04});
    EXPECT_TRUE(runtime().stationaryWaitActive);
    advance(1.04);
    expectClicks({1.04, 9.08});
    advance(7.0);
    expectClicks({1.04, 9.08, 16.08});
}

TEST_F(LeadTest, LoopThatIsLateByLessIsNotSeen) {
    run(unlimited());
    advance(7.0 - earlier);
    platform.loop.spend(earlier - shortly);
    advance(14.0);
    expectClicks({0.0, 7.0, 14.0});
}

TEST_F(LeadTest, ClickOfALoopThatIsLateByMoreIsPostedAtOnce) {
    run(unlimited());
    advance(7.0 - earlier);
    platform.loop.spend(earlier + 0.1);
    advance(14.0);
    expectClicks({0.0, 7.1, 14.0, 21.0});
}

TEST_F(LeadTest, ClockSetForwardBehindTheHandOverActsBehindTheClick) {
    runUntilHandedOver(unlimited());
    platform.loop.shiftWallClock(3600.0);
    advance(22.0);
    expectClicks({0.0, 7.0, 14.0, 14.0, 21.0, 28.0});
}

TEST_F(LeadTest, ClockSetBackBehindTheHandOverActsBehindTheClick) {
    runUntilHandedOver(unlimited());
    platform.loop.shiftWallClock(-3600.0);
    advance(3625.0);
    expectClicks({0.0, 7.0, 14.0, 3621.0, 3628.0});
}

TEST_F(LeadTest, TwoClicksAreNeverOnTheirWayTogether) {
    run(unlimited());
    advance(3.0);
    platform.loop.shiftWallClock(3600.0);
    advance(4.0 - shortly);
    EXPECT_EQ(runtime().clicksCompleted, 2) << "the one after it comes without a wait, and all the same behind it";
    store->stop();
    advance(60.0);
    expectClicks({0.0, 7.0});
}

} // namespace velloran
