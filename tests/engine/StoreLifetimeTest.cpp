#include "engine/StoreTest.h"

#include <memory>

namespace velloran {

namespace {

class StoreLifetimeTest : public StoreTest {
protected:
    /// Lets go of the store; what is left of it.
    std::weak_ptr<AutoClickerStore> drop() {
        const std::weak_ptr<AutoClickerStore> watched = store;
        store.reset();
        return watched;
    }

    static AutoClickerConfig withHotkey(AutoClickerConfig config) {
        config.hotkey = HotkeyCombo{0xC0000, 1, "⌃⌥S"};
        return config;
    }
};

} // namespace

TEST_F(StoreLifetimeTest, DroppedWhileSavingIsPendingItSavesNothing) {
    open();
    advance(1.0);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 2.0; });
    EXPECT_TRUE(drop().expired());
    EXPECT_EQ(platform.loop.pendingCalls(), 0U) << "the wait ends with the subscription";
    advance(10.0);
    EXPECT_EQ(platform.preferences.writes, 1);
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig().clickIntervalSeconds, 7.0);
}

TEST_F(StoreLifetimeTest, DroppedBetweenTheEndOfTheWaitAndTheSavingItSavesNothing) {
    open();
    advance(1.0);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 2.0; });
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(platform.loop.pendingCalls(), 1U) << "the saving itself";
    EXPECT_TRUE(drop().expired());
    platform.loop.runDue();
    EXPECT_EQ(platform.preferences.writes, 1);
}

TEST_F(StoreLifetimeTest, DroppedBeforeTheHotkeyIsRegisteredItRegistersNone) {
    open(withHotkey(unlimited()));
    EXPECT_TRUE(drop().expired());
    advance(1.0);
    EXPECT_EQ(platform.count("register key"), 0);
    EXPECT_EQ(platform.preferences.writes, 0);
}

TEST_F(StoreLifetimeTest, DroppedBeforeTheFirstStepOfTheLoopNothingRuns) {
    open(unlimited());
    store->start();
    EXPECT_TRUE(drop().expired()) << "the loop holds it weakly until then";
    advance(60.0);
    expectClicks({});
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(StoreLifetimeTest, RunningLoopKeepsItAliveUntilTheLoopEnds) {
    open(counted(3));
    store->start();
    platform.loop.runDue();
    const auto watched = drop();
    EXPECT_FALSE(watched.expired());
    advance(13.9);
    EXPECT_FALSE(watched.expired());
    advance(0.2);
    EXPECT_TRUE(watched.expired());
    expectClicks({0.0, 7.0, 14.0});
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(StoreLifetimeTest, StoreThatALoopKeepsAliveStillSaves) {
    open(unlimited());
    store->start();
    advance(1.0);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 2.0; });
    const auto watched = drop();
    advance(0.25);
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig().clickIntervalSeconds, 2.0);
    watched.lock()->stop();
}

TEST_F(StoreLifetimeTest, HotkeyStopsALoopThatNobodyElseHolds) {
    open(withHotkey(unlimited()));
    platform.loop.runDue();
    pressHotkey();
    const auto watched = drop();
    advance(8.0);
    EXPECT_FALSE(watched.expired());
    pressHotkey();
    EXPECT_TRUE(watched.expired());
    expectClicks({0.0, 7.0});
}

TEST_F(StoreLifetimeTest, HotkeyStaysRegisteredAndItsPressFindsNobody) {
    open(withHotkey(unlimited()));
    advance(1.0);
    EXPECT_TRUE(drop().expired());
    EXPECT_EQ(platform.hotKeys.size(), 1U) << "the end of the store does not unregister";
    pressHotkey();
    advance(60.0);
    expectClicks({});
}

TEST_F(StoreLifetimeTest, DroppedWhileAPressIsOnItsWay) {
    open(withHotkey(unlimited()));
    advance(1.0);
    platform.pressHotKey({HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber});
    ASSERT_TRUE(platform.loop.runNext()) << "the action, which schedules the toggle";
    EXPECT_TRUE(drop().expired());
    platform.loop.runDue();
    expectClicks({});
}

TEST_F(StoreLifetimeTest, EndDrainsTheQueue) {
    open(counted(1));
    advance(1.0);
    bool wasAliveAtTheEnd = false;
    const Subscription watching = store->runtime().stream().subscribe([&](const AutoClickerRuntime& record) {
        if (record.status == ClickerStatus::completed) {
            wasAliveAtTheEnd = store != nullptr;
            store.reset();
        }
    });
    store->start();
    const std::weak_ptr<AutoClickerStore> watched = store;
    ASSERT_TRUE(platform.loop.runNext()) << "the first step of the loop, which gives the others a turn";
    EXPECT_FALSE(wasAliveAtTheEnd);
    ASSERT_TRUE(platform.loop.runNext()) << "the second: it clicks, completes and lets go of the store";
    EXPECT_TRUE(wasAliveAtTheEnd);
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(platform.pairedClicks, 1U) << "the click was posted by the end of the queue";
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(StoreLifetimeTest, TwoStoresFollowEachOther) {
    open(withHotkey(unlimited()));
    platform.loop.runDue();
    const auto first = drop();
    EXPECT_TRUE(first.expired());
    store = fakes::makeStore(platform);
    platform.loop.runDue();
    EXPECT_EQ(platform.hotKeys.size(), 1U);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::running);
}

TEST(StoreLifetime, EndOfTheEventLoopIsTheEndOfARunAndItsStore) {
    auto platform = std::make_unique<fakes::RecordingPlatform>();
    std::weak_ptr<AutoClickerStore> watched;
    {
        const auto store = fakes::makeStore(*platform);
        watched = store;
        store->start();
        platform->loop.runDue();
    }
    EXPECT_FALSE(watched.expired()) << "the loop waits for its next click";
    HotkeyManager::endShared();
    platform.reset();
    EXPECT_TRUE(watched.expired());
}

} // namespace velloran
