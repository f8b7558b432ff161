#include "engine/PermissionChecker.h"
#include "engine/StoreTest.h"

namespace velloran {

namespace {

/// A start that is refused while an accepted one goes on.
class RefusedStartTest : public StoreTest {};

} // namespace

TEST_F(RefusedStartTest, LeavesARunningLoopClickingUntilItCompletes) {
    open(counted(4));
    store->start();
    advance(8.0);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 0.0; });
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_EQ(runtime().errorMessage, intervalMessage);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    advance(7.0);
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_EQ(runtime().clicksCompleted, 3);
    EXPECT_EQ(runtime().clicksRemaining, 1);
    advance(7.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksRemaining, 0);
    expectClicks({0.0, 7.0, 14.0, 21.0});
}

TEST_F(RefusedStartTest, ChangesNothingOfTheRecordButStatusAndMessage) {
    for (const bool isTrusted : {true, false}) {
        platform.isTrusted = true;
        AutoClickerConfig config = counted(4);
        config.requireStationaryMouse = true;
        open(config);
        store->start();
        advance(2.0);
        platform.onPointerRead = [this] { platform.pointer = platform::Point{platform.pointer->x + 10.0, 0.0}; };
        advance(8.0);
        AutoClickerRuntime expected = runtime();
        EXPECT_NE(expected.nextClickAt, std::nullopt);
        EXPECT_TRUE(expected.stationaryWaitActive);
        EXPECT_EQ(expected.clicksRemaining, 3);
        platform.isTrusted = isTrusted;
        if (isTrusted) {
            store->config.modify([](AutoClickerConfig& edited) { edited.clickIntervalSeconds = 0.0; });
        }
        store->start();
        expected.status = ClickerStatus::error;
        expected.errorMessage = isTrusted ? intervalMessage : PermissionChecker::permissionErrorMessage();
        EXPECT_EQ(runtime(), expected);
        store->stop();
        platform.loop.runDue();
        platform.onPointerRead = nullptr;
    }
}

TEST_F(RefusedStartTest, LeavesACountdownAlone) {
    AutoClickerConfig config = counted(4);
    config.startDelaySeconds = 5.0;
    open(config);
    store->start();
    advance(1.0);
    AutoClickerRuntime expected = runtime();
    EXPECT_NE(expected.countdownRemaining, std::nullopt);
    platform.isTrusted = false;
    store->start();
    expected.status = ClickerStatus::error;
    expected.errorMessage = PermissionChecker::permissionErrorMessage();
    EXPECT_EQ(runtime(), expected);
}

TEST_F(RefusedStartTest, ForWantOfPermissionLeavesTheLoopToo) {
    open(unlimited());
    store->start();
    advance(1.0);
    platform.isTrusted = false;
    store->start();
    advance(7.0);
    EXPECT_EQ(status(), ClickerStatus::error);
    expectClicks({0.0, 7.0});
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(50.0);
    expectClicks({0.0, 7.0});
}

TEST_F(RefusedStartTest, CountdownUnderARefusedStartGoesOnToRunning) {
    AutoClickerConfig config = counted(1);
    config.startDelaySeconds = 2.0;
    open(config);
    store->start();
    advance(1.0);
    platform.isTrusted = false;
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_NE(runtime().countdownRemaining, std::nullopt);
    advance(0.9);
    EXPECT_EQ(status(), ClickerStatus::error);
    advance(0.1);
    EXPECT_EQ(status(), ClickerStatus::completed);
    expectClicks({2.0});
}

TEST_F(RefusedStartTest, PermissionThatComesClearsTheErrorWhileTheOldLoopClicks) {
    open(unlimited());
    store->start();
    platform.loop.runDue();
    store->config.modify([](AutoClickerConfig& config) { config.startDelaySeconds = -1.0; });
    store->start();
    store->refreshPermission();
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(7.0);
    EXPECT_EQ(runtime().clicksCompleted, 2);
}

} // namespace velloran
