#include "engine/PermissionChecker.h"
#include "engine/StoreTest.h"

#include <string>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

class StorePermissionTest : public StoreTest {};

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

TEST_F(StorePermissionTest, SettingsAreOpenedOnRequest) {
    open();
    platform.journal.clear();
    store->openAccessibilitySettings();
    EXPECT_EQ(platform.journal, Journal{"open settings"});
}

} // namespace velloran
