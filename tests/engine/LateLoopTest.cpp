#include "engine/StoreTest.h"

#include <limits>

namespace velloran {

namespace {

/// A run that is late at every pass: it never waits for a click, and must let the rest of the program in all the same.
class LateLoopTest : public StoreTest {
protected:
    /// Still-mouse clicks ten milliseconds apart, where one look at the pointer takes twice as long.
    void runLate() {
        AutoClickerConfig config = unlimited(0.01);
        config.requireStationaryMouse = true;
        open(config);
        platform.loop.runDue();
        platform.onPointerRead = [this] {
            platform.loop.spend(0.02);
            giveUpAfter(1000);
        };
        store->start();
    }

    /// A loop that lets nobody in would never come back to the test.
    void giveUpAfter(int passes) {
        if (++passes_ == passes) {
            ADD_FAILURE() << "nobody was let in";
            store->stop();
        }
    }

private:
    int passes_ = 0;
};

} // namespace

TEST_F(LateLoopTest, StopActsWhileEveryPassIsLate) {
    runLate();
    platform.loop.callAfter(5 * nanosecondsPerSecond, [this] { store->stop(); });
    advance(10.0);
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_GT(clicks().size(), 150U);
    EXPECT_LT(clicks().back(), 5.021) << "the pass under way, and none after it";
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(LateLoopTest, HotkeyActsWhileEveryPassIsLate) {
    runLate();
    store->config.modify([](AutoClickerConfig& config) { config.hotkey = HotkeyCombo{0xC0000, 1, "⌃⌥S"}; });
    platform.loop.callAfter(5 * nanosecondsPerSecond, [this] {
        platform.pressHotKey({HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber});
    });
    advance(10.0);
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_LT(clicks().back(), 5.1);
}

TEST_F(LateLoopTest, EveryPassIsATurnOfItsOwn) {
    runLate();
    advance(3.0);
    for (int turn = 0; turn < 100; ++turn) {
        const std::int64_t before = runtime().clicksCompleted;
        ASSERT_TRUE(platform.loop.runNext());
        EXPECT_LE(runtime().clicksCompleted, before + 1);
    }
    EXPECT_EQ(status(), ClickerStatus::running);
}

TEST_F(LateLoopTest, FirstPassYieldsOnceWithoutLettingTimePass) {
    open(counted(2));
    advance(1.0);
    store->start();
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(runtime().clicksCompleted, 0);
    EXPECT_EQ(platform.loop.pendingCalls(), 1U);
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(runtime().clicksCompleted, 1);
    EXPECT_NEAR(static_cast<double>(platform.loop.elapsed()), 1e9, 0.0);
}

TEST_F(LateLoopTest, CancellationIsLookedAtAfterTheYield) {
    open(counted(2));
    advance(1.0);
    store->start();
    ASSERT_TRUE(platform.loop.runNext());
    store->stop();
    advance(60.0);
    expectClicks({});
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(LateLoopTest, CompletionFollowsTheLastClickInTheSameTurn) {
    open(counted(3, 0.01));
    advance(1.0);
    store->start();
    ASSERT_TRUE(platform.loop.runNext());
    platform.loop.shiftWallClock(3600.0);
    while (runtime().clicksCompleted < 3) {
        EXPECT_EQ(status(), ClickerStatus::running);
        ASSERT_TRUE(platform.loop.runNext());
    }
    EXPECT_EQ(status(), ClickerStatus::completed);
}

TEST_F(LateLoopTest, PassThatWaitsDoesNotYieldAsWell) {
    open(unlimited(7.0));
    advance(1.0);
    store->start();
    platform.loop.runDue();
    EXPECT_EQ(runtime().clicksCompleted, 1);
    ASSERT_TRUE(platform.loop.runNext()) << "the end of the wait";
    EXPECT_EQ(runtime().clicksCompleted, 2);
}

TEST_F(LateLoopTest, IntervalThatIsNoNumberCanBeStopped) {
    AutoClickerConfig config = unlimited();
    open(config);
    config.clickIntervalSeconds = std::numeric_limits<double>::quiet_NaN();
    store->config.set(config);
    const Subscription watching =
        store->runtime().stream().subscribe([this](const AutoClickerRuntime&) { giveUpAfter(1000); });
    store->start();
    platform.loop.post([this] { store->stop(); });
    platform.loop.runDue();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_LE(clicks().size(), 2U);
}

} // namespace velloran
