#include "engine/StoreTest.h"
#include "hotkeys/HotkeyPreset.h"

#include <optional>
#include <string>
#include <vector>

namespace velloran {

namespace {

const HotkeyCombo controlOptionS{0xC0000, 1, "⌃⌥S"};
const HotkeyCombo controlF8{0x40000, 100, "⌃F8"};

class StoreHotkeyTest : public StoreTest {
protected:
    void openWith(const std::optional<HotkeyCombo>& combo, AutoClickerConfig config = unlimited()) {
        config.hotkey = combo;
        open(config);
        platform.loop.runDue();
    }

    void setHotkey(const std::optional<HotkeyCombo>& combo) {
        store->config.modify([&combo](AutoClickerConfig& config) { config.hotkey = combo; });
    }

    [[nodiscard]] int registrations() const { return platform.count("register key"); }
};

} // namespace

TEST_F(StoreHotkeyTest, StoredHotkeyIsRegisteredAtStartInATurnOfItsOwn) {
    AutoClickerConfig config;
    config.hotkey = controlOptionS;
    open(config);
    EXPECT_EQ(registrations(), 0);
    platform.loop.runDue();
    EXPECT_EQ(platform.entries("register"),
              std::vector<std::string>{"register key 1 modifiers 6144 signature 1447842382 id 1"});
    EXPECT_EQ(platform.hotKeys.size(), 1U);
}

TEST_F(StoreHotkeyTest, WithoutAHotkeyNothingIsRegistered) {
    openWith(std::nullopt);
    EXPECT_EQ(registrations(), 0);
    EXPECT_EQ(platform.count("install handler"), 0);
}

TEST_F(StoreHotkeyTest, ChangeActsInALaterTurn) {
    openWith(std::nullopt);
    setHotkey(controlF8);
    EXPECT_EQ(registrations(), 0) << "nothing acts inside the notification";
    platform.loop.runDue();
    EXPECT_EQ(registrations(), 1);
}

TEST_F(StoreHotkeyTest, OtherFieldsDoNotRegisterItAgain) {
    openWith(controlOptionS);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 2.0; });
    store->config.modify([](AutoClickerConfig& config) { config.playClickSound = true; });
    setHotkey(controlOptionS);
    platform.loop.runDue();
    EXPECT_EQ(registrations(), 1);
    EXPECT_EQ(platform.count("unregister key"), 0);
}

TEST_F(StoreHotkeyTest, AnotherDisplayIsAnotherHotkey) {
    openWith(controlOptionS);
    HotkeyCombo other = controlOptionS;
    other.display = "⌥⌃S";
    setHotkey(other);
    platform.loop.runDue();
    EXPECT_EQ(registrations(), 2);
}

TEST_F(StoreHotkeyTest, ClearingUnregisters) {
    openWith(controlOptionS);
    setHotkey(std::nullopt);
    platform.loop.runDue();
    EXPECT_TRUE(platform.hotKeys.empty());
    EXPECT_TRUE(platform.handlers.empty());
    EXPECT_EQ(platform.count("unregister key"), 1);
}

TEST_F(StoreHotkeyTest, ChangesInOneTurnAreAllApplied) {
    openWith(std::nullopt);
    setHotkey(controlOptionS);
    setHotkey(std::nullopt);
    setHotkey(controlF8);
    platform.loop.runDue();
    EXPECT_EQ(registrations(), 2);
    EXPECT_EQ(platform.hotKeys.size(), 1U);
    EXPECT_TRUE(platform.entries("register").back().starts_with("register key 100 "));
}

TEST_F(StoreHotkeyTest, PressToggles) {
    openWith(controlOptionS);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::running);
    advance(8.0);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::idle);
    advance(60.0);
    expectClicks({0.0, 7.0});
}

TEST_F(StoreHotkeyTest, PressActsTwoTurnsLater) {
    openWith(controlOptionS);
    advance(1.0);
    platform.pressHotKey({HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber});
    EXPECT_EQ(status(), ClickerStatus::idle);
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(status(), ClickerStatus::idle) << "the action only schedules";
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(status(), ClickerStatus::running);
}

TEST_F(StoreHotkeyTest, PressOnACompletedRunStartsAfresh) {
    openWith(controlOptionS, counted(3, 1.0));
    pressHotkey();
    advance(10.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().clicksCompleted, 1);
    EXPECT_EQ(runtime().clicksRemaining, 2);
}

TEST_F(StoreHotkeyTest, PressDuringTheCountdownStops) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 5.0;
    openWith(controlOptionS, config);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::delayed);
    advance(1.0);
    pressHotkey();
    EXPECT_EQ(status(), ClickerStatus::idle);
}

TEST_F(StoreHotkeyTest, TakenCombinationLeavesTheControllerRunning) {
    platform.hotKeyStatus = platform::hotKeyExistsError;
    openWith(controlOptionS);
    EXPECT_EQ(platform.entries("log"),
              std::vector<std::string>{"log HotkeyManager: RegisterEventHotKey failed with status -9878"});
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_EQ(store->config.get().hotkey, controlOptionS);
    store->start();
    advance(8.0);
    expectClicks({0.0, 7.0});
}

TEST_F(StoreHotkeyTest, PresetAndResetKeepTheHotkey) {
    openWith(controlOptionS);
    store->apply(Preset::builtIns().at(0));
    AutoClickerConfig expected = Preset::builtIns().at(0).config;
    expected.hotkey = controlOptionS;
    EXPECT_EQ(store->config.get(), expected);

    Preset withHotkey = Preset::builtIns().at(1);
    withHotkey.config.hotkey = controlF8;
    store->apply(withHotkey);
    EXPECT_EQ(store->config.get().hotkey, controlOptionS);

    store->resetToDefaults();
    expected = AutoClickerConfig::default_();
    expected.hotkey = controlOptionS;
    EXPECT_EQ(store->config.get(), expected);
    platform.loop.runDue();
    EXPECT_EQ(registrations(), 1);
}

TEST_F(StoreHotkeyTest, PresetWithAHotkeyGivesNoneToAUserWithoutOne) {
    openWith(std::nullopt);
    Preset withHotkey = Preset::builtIns().at(1);
    withHotkey.config.hotkey = controlF8;
    store->apply(withHotkey);
    EXPECT_EQ(store->config.get().hotkey, std::nullopt);
}

TEST_F(StoreHotkeyTest, ImportReplacesTheHotkey) {
    openWith(controlOptionS);
    AutoClickerConfig imported = counted(5);
    imported.hotkey = controlF8;
    ASSERT_TRUE(store->importConfig(PresetStore(platform.preferences).exportConfig(imported).value()));
    EXPECT_EQ(store->config.get(), imported);
    platform.loop.runDue();
    EXPECT_TRUE(platform.entries("register").back().starts_with("register key 100 "));

    imported.hotkey.reset();
    ASSERT_TRUE(store->importConfig(PresetStore(platform.preferences).exportConfig(imported).value()));
    platform.loop.runDue();
    EXPECT_TRUE(platform.hotKeys.empty());
}

TEST_F(StoreHotkeyTest, EveryOfferedChoiceRegisters) {
    openWith(std::nullopt);
    for (const HotkeyPreset& choice : HotkeyPreset::all()) {
        setHotkey(choice.combo);
        platform.loop.runDue();
        EXPECT_EQ(platform.entries("register").back(),
                  "register key " + std::to_string(choice.combo.keyCode) + " modifiers " +
                      std::to_string(choice.combo.carbonModifiers()) + " signature 1447842382 id 1");
        EXPECT_EQ(platform.hotKeys.size(), 1U);
    }
}

} // namespace velloran
