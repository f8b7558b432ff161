#include "engine/PermissionChecker.h"
#include "engine/StoreTest.h"

#include <string>

namespace velloran {

namespace {

/// Every row of the table of statuses and events, from every status that the row names.
class StoreStateTest : public StoreTest, public testing::WithParamInterface<ClickerStatus> {
protected:
    void openIn(ClickerStatus from, const AutoClickerConfig& config = unlimited()) {
        open(config);
        platform.loop.runDue();
        force(from);
    }

    [[nodiscard]] bool isStartedByTheHotkey() const { return !isActive(GetParam()); }
};

std::string nameOf(const testing::TestParamInfo<ClickerStatus>& info) {
    return std::string(rawValue(info.param));
}

} // namespace

INSTANTIATE_TEST_SUITE_P(From, StoreStateTest, testing::ValuesIn(allClickerStatuses), nameOf);

TEST_P(StoreStateTest, StartWithAnInvalidConfigurationGoesToError) {
    openIn(GetParam(), counted(0));
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_EQ(runtime().errorMessage, "Total clicks must be between 1 and 10000000.");
}

TEST_P(StoreStateTest, StartWithoutPermissionGoesToError) {
    openIn(GetParam());
    platform.isTrusted = false;
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_EQ(runtime().errorMessage, PermissionChecker::permissionErrorMessage());
    EXPECT_EQ(platform.count("open settings"), 1);
}

TEST_P(StoreStateTest, StartWithADelayGoesToDelayed) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 1.0;
    openIn(GetParam(), config);
    store->start();
    EXPECT_EQ(status(), ClickerStatus::delayed);
    EXPECT_EQ(runtime().countdownRemaining, 1.0);
    advance(1.0);
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
}

TEST_P(StoreStateTest, StartWithoutADelayGoesToRunning) {
    openIn(GetParam());
    store->start();
    EXPECT_EQ(status(), ClickerStatus::running);
    platform.loop.runDue();
    expectClicks({0.0});
}

TEST_P(StoreStateTest, StopGoesToIdleButKeepsCompleted) {
    openIn(GetParam());
    store->stop();
    EXPECT_EQ(status(), GetParam() == ClickerStatus::completed ? ClickerStatus::completed : ClickerStatus::idle);
}

TEST_P(StoreStateTest, ToggleStartsOrStopsByTheStatus) {
    openIn(GetParam());
    store->toggleStartStop();
    EXPECT_EQ(status(), isStartedByTheHotkey() ? ClickerStatus::running : ClickerStatus::idle);
    advance(8.0);
    expectClicks(isStartedByTheHotkey() ? std::vector{0.0, 7.0} : std::vector<double>{});
}

TEST_P(StoreStateTest, ToggleIntoARefusedStartGoesToErrorOnlyWhereItStarts) {
    openIn(GetParam(), counted(0));
    store->toggleStartStop();
    EXPECT_EQ(status(), isStartedByTheHotkey() ? ClickerStatus::error : ClickerStatus::idle);
}

TEST_P(StoreStateTest, RefreshWithPermissionClearsErrorAlone) {
    openIn(GetParam());
    store->refreshPermission();
    EXPECT_EQ(status(), GetParam() == ClickerStatus::error ? ClickerStatus::idle : GetParam());
}

TEST_P(StoreStateTest, RefreshWithoutPermissionChangesNoStatus) {
    openIn(GetParam());
    platform.isTrusted = false;
    store->refreshPermission();
    EXPECT_EQ(status(), GetParam());
}

class StoreStopTest : public StoreTest {};

TEST_F(StoreStopTest, DelayedToRunningToCompleted) {
    AutoClickerConfig config = counted(2);
    config.startDelaySeconds = 1.0;
    open(config);
    store->start();
    EXPECT_EQ(status(), ClickerStatus::delayed);
    advance(1.0);
    EXPECT_EQ(status(), ClickerStatus::running);
    advance(7.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().nextClickAt, std::nullopt);
    EXPECT_EQ(runtime().clicksRemaining, 0);
}

TEST_F(StoreStopTest, StopDuringTheCountdown) {
    AutoClickerConfig config = counted(3);
    config.startDelaySeconds = 2.5;
    open(config);
    store->start();
    advance(1.25);
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
    EXPECT_EQ(runtime().clicksCompleted, 0);
    advance(10.0);
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
    expectClicks({});
}

TEST_F(StoreStopTest, StopKeepsWhatShowsHowFarTheRunGot) {
    open(counted(5));
    store->start();
    const auto startedAt = runtime().startedAt;
    advance(8.0);
    EXPECT_NE(runtime().nextClickAt, std::nullopt);
    store->stop();
    AutoClickerRuntime expected;
    expected.clicksCompleted = 2;
    expected.clicksRemaining = 3;
    expected.startedAt = startedAt;
    EXPECT_EQ(runtime(), expected);
    advance(60.0);
    EXPECT_EQ(runtime(), expected);
    expectClicks({0.0, 7.0});
}

TEST_F(StoreStopTest, StopKeepsTheErrorMessage) {
    open(counted(0));
    store->start();
    store->stop();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().errorMessage, "Total clicks must be between 1 and 10000000.");
}

TEST_F(StoreStopTest, StopOfACompletedRunKeepsTheRecord) {
    open(counted(1));
    store->start();
    platform.loop.runDue();
    const AutoClickerRuntime before = runtime();
    EXPECT_EQ(before.status, ClickerStatus::completed);
    store->stop();
    store->stop();
    EXPECT_EQ(runtime(), before);
}

TEST_F(StoreStopTest, StopWithNothingRunningIsHarmless) {
    open();
    store->stop();
    EXPECT_EQ(runtime(), AutoClickerRuntime::initial());
}

TEST_F(StoreStopTest, StopBeforeTheFirstStepClicksNothing) {
    open(unlimited());
    store->start();
    store->stop();
    advance(60.0);
    expectClicks({});
    EXPECT_EQ(status(), ClickerStatus::idle);
}

TEST_F(StoreStopTest, StopWakesASleepingLoopAtOnce) {
    open(unlimited(3600.0));
    advance(1.0);
    store->start();
    platform.loop.runDue();
    EXPECT_EQ(platform.loop.pendingCalls(), 1U) << "the sleep until the next click";
    store->stop();
    const std::weak_ptr<AutoClickerStore> watched = store;
    store.reset();
    EXPECT_FALSE(watched.expired()) << "nothing of the loop runs inside stop";
    platform.loop.runDue();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(StoreStopTest, ClickThatWasHandedOverIsStillPosted) {
    open(unlimited());
    advance(1.0);
    store->start();
    ASSERT_TRUE(platform.loop.runNext()) << "the first step of the loop, which gives the others a turn";
    EXPECT_EQ(runtime().clicksCompleted, 0);
    ASSERT_TRUE(platform.loop.runNext()) << "the second, which clicks";
    EXPECT_EQ(runtime().clicksCompleted, 1);
    EXPECT_EQ(platform.postedEvents, 0U);
    store->stop();
    platform.loop.runDue();
    EXPECT_EQ(platform.pairedClicks, 1U);
    EXPECT_EQ(platform.postedEvents, 2U);
}

} // namespace velloran
