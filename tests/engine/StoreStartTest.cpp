#include "engine/PermissionChecker.h"
#include "engine/StoreTest.h"

#include <string>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

class StoreStartTest : public StoreTest {
protected:
    void openInvalid() {
        AutoClickerConfig config;
        config.clickIntervalSeconds = 0.001;
        open(config);
    }
};

} // namespace

TEST_F(StoreStartTest, NewStoreTakesWhatIsStored) {
    AutoClickerConfig config;
    config.mouseButton = MouseButton::right;
    PresetStore(platform.preferences).savePresets({Preset::make("Mine", config)});
    open(config);
    EXPECT_EQ(store->config.get(), config);
    ASSERT_EQ(store->presets().get().size(), 1U);
    EXPECT_EQ(store->presets().get().front().name, "Mine");
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(runtime(), AutoClickerRuntime::initial());
    EXPECT_EQ(platform.loop.queueLabel(), "velloran.engine");
    EXPECT_EQ(platform.count("load sound Tink"), 1);
    EXPECT_EQ(platform.count("ask trust"), 1);
    EXPECT_EQ(platform.count("prompt"), 0);
}

TEST_F(StoreStartTest, NewStoreKnowsThatThePermissionIsMissing) {
    platform.isTrusted = false;
    open();
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(platform.count("prompt"), 0);
    EXPECT_EQ(platform.count("open settings"), 0);
}

TEST_F(StoreStartTest, CorruptConfigurationStartsFromTheDefaults) {
    platform.preferences.values["velloran.config"] = Bytes("{");
    store = fakes::makeStore(platform);
    EXPECT_EQ(store->config.get(), AutoClickerConfig::default_());
    advance(0.2);
    EXPECT_EQ(platform.preferences.bytes("velloran.config"), "{") << "left alone until the first save";
}

TEST_F(StoreStartTest, UsesThePresetStoreItIsGiven) {
    fakes::FakePreferences others;
    PresetStore(others).saveConfig(unlimited(3.0));
    store = fakes::makeStore(platform, others);
    EXPECT_EQ(store->config.get(), unlimited(3.0));
    advance(0.25);
    EXPECT_EQ(others.writes, 2);
    EXPECT_EQ(platform.preferences.writes, 0);
}

TEST_F(StoreStartTest, InvalidConfigurationIsRefusedWithItsMessage) {
    openInvalid();
    store->start();
    AutoClickerRuntime expected;
    expected.status = ClickerStatus::error;
    expected.errorMessage = intervalMessage;
    EXPECT_EQ(runtime(), expected);
    advance(100.0);
    expectClicks({});
}

TEST_F(StoreStartTest, ConfigurationIsCheckedBeforeThePermission) {
    platform.isTrusted = false;
    openInvalid();
    platform.journal.clear();
    store->start();
    EXPECT_EQ(runtime().errorMessage, intervalMessage);
    EXPECT_TRUE(platform.journal.empty()) << "nobody asked about the permission";
}

TEST_F(StoreStartTest, InvalidConfigurationLeavesThePermissionFlagAlone) {
    openInvalid();
    platform.isTrusted = false;
    store->start();
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
}

TEST_F(StoreStartTest, MissingPermissionIsRefusedAndTheSettingsAreOpened) {
    open(counted(3));
    platform.isTrusted = false;
    store->start();
    AutoClickerRuntime expected;
    expected.status = ClickerStatus::error;
    expected.errorMessage = PermissionChecker::permissionErrorMessage();
    EXPECT_EQ(runtime(), expected);
    EXPECT_FALSE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(platform.count("open settings"), 1);
    EXPECT_EQ(platform.count("prompt"), 0);
    advance(100.0);
    expectClicks({});
}

TEST_F(StoreStartTest, MissingPermissionShowsBeforeTheSettingsOpen) {
    open();
    platform.isTrusted = false;
    platform.journal.clear();
    const Subscription flag =
        store->hasAccessibilityPermission().observeWillChange([this] { platform.journal.emplace_back("flag"); });
    const Subscription record = store->runtime().observeWillChange([this] { platform.journal.emplace_back("error"); });
    store->start();
    EXPECT_EQ(platform.journal, (Journal{"ask trust", "flag", "error", "open settings"}));
}

TEST_F(StoreStartTest, AcceptedStartReplacesTheWholeRecord) {
    open(counted(5));
    force(ClickerStatus::error);
    advance(12.5);
    store->start();
    AutoClickerRuntime expected;
    expected.status = ClickerStatus::running;
    expected.clicksRemaining = 5;
    expected.startedAt = platform.loop.now();
    EXPECT_EQ(runtime(), expected);
}

TEST_F(StoreStartTest, AcceptedStartWithADelayCountsDown) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 2.5;
    open(config);
    store->start();
    AutoClickerRuntime expected;
    expected.status = ClickerStatus::delayed;
    expected.startedAt = platform.loop.now();
    expected.countdownRemaining = 2.5;
    EXPECT_EQ(runtime(), expected);
}

TEST_F(StoreStartTest, ManualRunHasNoRemainingClicksEvenWithACount) {
    AutoClickerConfig config = unlimited();
    config.maxClicks = 3;
    open(config);
    store->start();
    EXPECT_EQ(runtime().clicksRemaining, std::nullopt);
    advance(28.5);
    EXPECT_EQ(runtime().clicksCompleted, 5);
    EXPECT_EQ(runtime().clicksRemaining, std::nullopt);
}

TEST_F(StoreStartTest, AcceptedStartAsksOnceAndSaysThatThePermissionIsThere) {
    platform.isTrusted = false;
    open();
    platform.isTrusted = true;
    platform.journal.clear();
    store->start();
    EXPECT_TRUE(store->hasAccessibilityPermission().get());
    EXPECT_EQ(platform.journal, Journal{"ask trust"});
}

TEST_F(StoreStartTest, NothingIsClickedInsideStart) {
    open(counted(1));
    store->start();
    EXPECT_EQ(runtime().clicksCompleted, 0);
    platform.loop.runDue();
    EXPECT_EQ(runtime().clicksCompleted, 1);
}

TEST_F(StoreStartTest, SecondStartReplacesTheRunningLoop) {
    open(unlimited());
    store->start();
    advance(3.0);
    store->start();
    EXPECT_EQ(runtime().clicksCompleted, 0);
    advance(15.0);
    expectClicks({0.0, 3.0, 10.0, 17.0});
    EXPECT_EQ(runtime().clicksCompleted, 3);
}

TEST_F(StoreStartTest, SecondStartInTheSameTurnLeavesOneLoop) {
    open(unlimited());
    store->start();
    store->start();
    advance(8.0);
    expectClicks({0.0, 7.0});
    EXPECT_EQ(runtime().clicksCompleted, 2);
}

TEST_F(StoreStartTest, ReplacedCountdownTouchesNothing) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 5.0;
    open(config);
    store->start();
    advance(4.95);
    store->config.modify([](AutoClickerConfig& edited) { edited.startDelaySeconds = 10.0; });
    store->start();
    advance(5.0);
    EXPECT_EQ(status(), ClickerStatus::delayed);
    EXPECT_NEAR(*runtime().countdownRemaining, 5.0, 0.11);
    advance(5.0);
    EXPECT_EQ(status(), ClickerStatus::running);
    expectClicks({14.95});
}

} // namespace velloran
