#include "engine/PermissionChecker.h"
#include "engine/StoreTest.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

class StorePermissionTest : public StoreTest {
protected:
    /// The desktop reports that the permission may have changed.
    void report(bool isTrusted) {
        platform.isTrusted = isTrusted;
        platform.journal.clear();
        ASSERT_TRUE(platform.trustChanged);
        platform.trustChanged();
    }
};

} // namespace

TEST_F(StorePermissionTest, RefreshWithPermissionAsksNobody) {
    open();
    platform.journal.clear();
    store->refreshPermission();
    EXPECT_EQ(platform.journal, (Journal{"ask trust", "ask trust"}));
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
}

TEST_F(StorePermissionTest, RefreshWithoutPermissionPrompts) {
    platform.isTrusted = false;
    open();
    platform.journal.clear();
    store->refreshPermission();
    EXPECT_EQ(platform.journal, (Journal{"ask trust", "prompt for trust", "ask trust"}));
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(status(), ClickerStatus::idle);
}

TEST_F(StorePermissionTest, GrantBringsARefusedStoreBackToReady) {
    platform.isTrusted = false;
    open(counted(2, 1.0));
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    EXPECT_EQ(runtime().errorMessage, PermissionChecker::permissionErrorMessage());
    EXPECT_EQ(platform.count("open settings"), 1);
    store->refreshPermission();
    EXPECT_EQ(status(), ClickerStatus::error);

    platform.isTrusted = true;
    store->refreshPermission();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().errorMessage, std::nullopt);
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    store->start();
    advance(1.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
}

TEST_F(StorePermissionTest, RefreshClearsTheErrorOfAnInvalidConfigurationAsWell) {
    open(counted(0));
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    store->refreshPermission();
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().errorMessage, std::nullopt);
}

TEST_F(StorePermissionTest, RefreshLeavesARunAlone) {
    open(unlimited());
    store->start();
    advance(1.0);
    const AutoClickerRuntime before = runtime();
    store->refreshPermission();
    EXPECT_EQ(runtime(), before);
    advance(7.0);
    expectClicks({0.0, 7.0});
}

TEST_F(StorePermissionTest, LossOfPermissionShowsInTheFlagAlone) {
    open();
    platform.isTrusted = false;
    store->refreshPermission();
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(runtime(), AutoClickerRuntime::initial());
}

TEST_F(StorePermissionTest, EveryAnswerIsPublished) {
    open();
    std::vector<bool> answers;
    const Subscription watching =
        store->hasAccessibilityPermission().stream().subscribe([&](bool trusted) { answers.push_back(trusted); });
    store->refreshPermission();
    store->start();
    platform.isTrusted = false;
    store->refreshPermission();
    EXPECT_EQ(answers, (std::vector<bool>{true, true, true, false}));
}

TEST_F(StorePermissionTest, ReportWithoutAChangeEndsNoRun) {
    open(counted(3));
    store->start();
    advance(1.0);
    const AutoClickerRuntime before = runtime();
    report(true);
    EXPECT_EQ(platform.journal, Journal{"ask trust"});
    EXPECT_EQ(runtime(), before);
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    advance(13.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    expectClicks({0.0, 7.0, 14.0});
}

TEST_F(StorePermissionTest, ReportedLossEndsTheRunAndAsksNobody) {
    open(counted(3));
    advance(1.0);
    store->start();
    advance(8.0);
    report(false);
    EXPECT_EQ(platform.journal, Journal{"ask trust"});
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_EQ(runtime().clicksRemaining, 1);
    EXPECT_EQ(runtime().nextClickAt, std::nullopt);
    EXPECT_EQ(runtime().errorMessage, std::nullopt);
    advance(60.0);
    expectClicks({1.0, 8.0});
    EXPECT_EQ(platform.journal, Journal{"ask trust"}) << "nor later";
}

TEST_F(StorePermissionTest, ReportedLossEndsACountdown) {
    AutoClickerConfig config = counted(3);
    config.startDelaySeconds = 5.0;
    open(config);
    store->start();
    advance(1.0);
    report(false);
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
    advance(60.0);
    expectClicks({});
}

TEST_F(StorePermissionTest, ReportedLossEndsARunUnderARefusedStart) {
    open(unlimited());
    store->start();
    advance(1.0);
    platform.isTrusted = false;
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    report(false);
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(60.0);
    expectClicks({0.0});
}

TEST_F(StorePermissionTest, ReportedLossWithoutARunShowsInTheFlagAlone) {
    open(counted(1));
    store->start();
    platform.loop.runDue();
    const AutoClickerRuntime completed = runtime();
    int changes = 0;
    const Subscription watching = store->runtime().observeWillChange([&] { ++changes; });
    report(false);
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(runtime(), completed);
    EXPECT_EQ(changes, 0);
}

TEST_F(StorePermissionTest, ReportWithoutAChangeLeavesARefusalStanding) {
    platform.isTrusted = false;
    open();
    store->start();
    const AutoClickerRuntime refused = runtime();
    EXPECT_EQ(refused.status, ClickerStatus::error);
    report(false);
    EXPECT_EQ(platform.journal, Journal{"ask trust"});
    EXPECT_EQ(runtime(), refused);
}

TEST_F(StorePermissionTest, ReportedGrantEndsARefusalForWantOfIt) {
    platform.isTrusted = false;
    open();
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    report(true);
    EXPECT_EQ(platform.journal, Journal{"ask trust"});
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(runtime().errorMessage, std::nullopt);
}

TEST_F(StorePermissionTest, ReportedGrantLeavesAnotherRefusalStanding) {
    open(counted(0));
    store->start();
    const AutoClickerRuntime refused = runtime();
    EXPECT_EQ(refused.status, ClickerStatus::error);
    report(false);
    report(true);
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(runtime(), refused);
}

TEST_F(StorePermissionTest, ReportedLossFindsARunThatWasStoppedOver) {
    open(unlimited());
    store->start();
    platform.loop.runDue();
    store->stop();
    int changes = 0;
    const Subscription watching = store->runtime().observeWillChange([&] { ++changes; });
    report(false);
    EXPECT_EQ(changes, 0) << "though its loop has not noticed yet";
}

TEST_F(StorePermissionTest, EveryReportIsPublished) {
    open();
    std::vector<bool> answers;
    const Subscription watching =
        store->hasAccessibilityPermission().stream().subscribe([&](bool trusted) { answers.push_back(trusted); });
    report(false);
    report(false);
    report(true);
    EXPECT_EQ(answers, (std::vector<bool>{true, false, false, true}));
}

TEST_F(StorePermissionTest, RunIsOverBeforeTheFlagShowsTheLoss) {
    open(unlimited());
    store->start();
    advance(1.0);
    std::vector<ClickerStatus> seen;
    const Subscription watching = store->hasAccessibilityPermission().stream().subscribe([&](bool trusted) {
        if (!trusted) {
            seen.push_back(status());
        }
    });
    report(false);
    EXPECT_EQ(seen, std::vector<ClickerStatus>{ClickerStatus::idle});
}

TEST_F(StorePermissionTest, ReportAfterTheEndOfTheStoreFindsNobody) {
    open();
    platform.loop.runDue();
    advance(1.0);
    store.reset();
    report(false);
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(StorePermissionTest, RefreshKeepsTheRunThatAStartInsideTheNotificationBegan) {
    open(counted(0));
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
    store->config.set(counted(1));
    bool isFirst = true;
    const Subscription watching = store->runtime().observeWillChange([&] {
        if (std::exchange(isFirst, false)) {
            store->start();
        }
    });
    store->refreshPermission();
    EXPECT_EQ(status(), ClickerStatus::running);
    platform.loop.runDue();
    EXPECT_EQ(status(), ClickerStatus::completed);
}

TEST_F(StorePermissionTest, RefreshKeepsTheCountsOfTheRun) {
    open(counted(5));
    store->start();
    advance(8.0);
    store->config.set(counted(0));
    store->start();
    AutoClickerRuntime expected = runtime();
    EXPECT_EQ(expected.status, ClickerStatus::error);
    EXPECT_EQ(expected.clicksRemaining, 3);
    expected.status = ClickerStatus::idle;
    expected.errorMessage.reset();
    store->refreshPermission();
    EXPECT_EQ(runtime(), expected) << "nothing but the error is cleared";
}

TEST_F(StorePermissionTest, NewerFindingIsNotOverwritten) {
    open(unlimited());
    // Lost while a start tells that the permission is there.
    const Subscription watching = store->hasAccessibilityPermission().observeWillChange([this] {
        if (std::exchange(platform.isTrusted, false)) {
            platform.trustChanged();
        }
    });
    store->start();
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    advance(60.0);
    EXPECT_EQ(status(), ClickerStatus::idle);
    expectClicks({});
}

TEST_F(StorePermissionTest, WhatWasTakenBackIsAskedForByTheUserAlone) {
    open(unlimited());
    store->start();
    platform.journal.clear();
    report(false);
    advance(60.0);
    EXPECT_EQ(platform.journal, Journal{"ask trust"}) << "and nobody is asked for it";
    store->openAccessibilitySettings();
    store->start();
    EXPECT_EQ(platform.count("open settings"), 2);
    EXPECT_EQ(platform.count("prompt"), 0);
}

TEST_F(StorePermissionTest, SettingsAreOpenedOnRequest) {
    open();
    platform.journal.clear();
    store->openAccessibilitySettings();
    EXPECT_EQ(platform.journal, Journal{"open settings"});
}

} // namespace velloran
