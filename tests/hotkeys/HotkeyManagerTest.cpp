#include "hotkeys/HotkeyManager.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace velloran {

namespace {

const HotkeyCombo controlOptionS{0xC0000, 1, "⌃⌥S"};
const HotkeyCombo controlF8{0x840000, 100, "⌃F8"};

constexpr const char* registersControlOptionS = "register key 1 modifiers 6144 signature 1447842382 id 1";
constexpr const char* registersControlF8 = "register key 100 modifiers 4096 signature 1447842382 id 1";

class HotkeyManagerTest : public testing::Test {
protected:
    ~HotkeyManagerTest() override { HotkeyManager::endShared(); }

    static HotkeyManager& manager() { return HotkeyManager::shared(); }

    void registerCounting(const HotkeyCombo& combo) {
        manager().register_(combo, [this] { ++fired; });
    }

    fakes::RecordingPlatform platform;
    int fired = 0;
    const platform::HotKeyId ours{HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber};
};

} // namespace

TEST_F(HotkeyManagerTest, SignatureIsFourLettersFirstOneHighest) {
    constexpr std::uint32_t letters = 'V' << 24 | 'L' << 16 | 'R' << 8 | 'N';
    EXPECT_EQ(HotkeyManager::hotKeySignature, letters);
    EXPECT_EQ(HotkeyManager::hotKeyNumber, 1U);
}

TEST_F(HotkeyManagerTest, ThereIsOneInstance) {
    EXPECT_EQ(&HotkeyManager::shared(), &HotkeyManager::shared());
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(HotkeyManagerTest, RegisterInstallsTheHandlerAndThenTheKey) {
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"install handler", registersControlOptionS}));
}

TEST_F(HotkeyManagerTest, UnregisterTakesTheKeyAndThenTheHandlerAway) {
    registerCounting(controlOptionS);
    platform.journal.clear();
    manager().unregister();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"unregister key", "remove handler"}));
    EXPECT_TRUE(platform.hotKeys.empty());
    EXPECT_TRUE(platform.handlers.empty());
}

TEST_F(HotkeyManagerTest, SecondRegistrationEndsTheFirstBeforeItBegins) {
    registerCounting(controlOptionS);
    registerCounting(controlF8);
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"install handler", registersControlOptionS, "unregister key",
                                                          "remove handler", "install handler", registersControlF8}));
    EXPECT_EQ(platform.hotKeys.size(), 1U);
    EXPECT_EQ(platform.handlers.size(), 1U);
}

TEST_F(HotkeyManagerTest, SecondRegistrationReplacesTheAction) {
    int first = 0;
    manager().register_(controlOptionS, [&first] { ++first; });
    registerCounting(controlF8);
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(fired, 1);
}

TEST_F(HotkeyManagerTest, UnregisterWithNothingRegisteredDoesNothing) {
    manager().unregister();
    manager().unregister();
    EXPECT_TRUE(platform.journal.empty());
    registerCounting(controlOptionS);
    manager().unregister();
    platform.journal.clear();
    manager().unregister();
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(HotkeyManagerTest, TakenCombinationIsLoggedAndLeavesTheHandler) {
    platform.hotKeyStatus = platform::hotKeyExistsError;
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal,
              (std::vector<std::string>{"install handler", registersControlOptionS,
                                        "log HotkeyManager: RegisterEventHotKey failed with status -9878"}));
    EXPECT_TRUE(platform.hotKeys.empty());
    EXPECT_EQ(platform.handlers.size(), 1U);
}

TEST_F(HotkeyManagerTest, DesktopWithoutHotkeysRefusesEveryCombination) {
    const platform::Desktop whole = platform.desktop.get();
    platform.desktop.set({});
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal,
              std::vector<std::string>{"log HotkeyManager: RegisterEventHotKey failed with status -9879"});
    manager().unregister();
    platform.desktop.set(whole);
    platform.journal.clear();
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"install handler", registersControlOptionS}));
}

TEST_F(HotkeyManagerTest, RegistrationEndsWithWhomItBegan) {
    registerCounting(controlOptionS);
    platform.desktop.set({});
    platform.journal.clear();
    manager().unregister();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"unregister key", "remove handler"}));
}

TEST_F(HotkeyManagerTest, FailedRegistrationIsClearedByTheNextCall) {
    platform.hotKeyStatus = platform::hotKeyInvalidError;
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal.back(), "log HotkeyManager: RegisterEventHotKey failed with status -9879");
    platform.journal.clear();
    platform.hotKeyStatus = platform::noErr;
    registerCounting(controlF8);
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"remove handler", "install handler", registersControlF8}));

    platform.hotKeyStatus = 7;
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.journal.back(), "log HotkeyManager: RegisterEventHotKey failed with status 7");
    platform.journal.clear();
    manager().unregister();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"remove handler"}));
}

TEST_F(HotkeyManagerTest, LateRefusalIsLoggedAndLeavesTheHandler) {
    platform.hotKeyStatus.reset();
    registerCounting(controlOptionS);
    EXPECT_EQ(manager().answer(), std::nullopt);
    EXPECT_TRUE(platform.entries("log").empty());
    EXPECT_TRUE(platform.answerHotKey(1, {platform::hotKeyExistsError, {}}));
    EXPECT_EQ(platform.journal.back(), "log HotkeyManager: RegisterEventHotKey failed with status -9878");
    EXPECT_EQ(manager().answer(), (platform::HotKeyAnswer{platform::hotKeyExistsError, {}}));
    EXPECT_EQ(platform.handlers.size(), 1U);
    platform.journal.clear();
    registerCounting(controlF8);
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"remove handler", "install handler", registersControlF8}));
    EXPECT_EQ(manager().answer(), std::nullopt);
}

TEST_F(HotkeyManagerTest, LateSuccessIsNotLogged) {
    platform.hotKeyStatus.reset();
    registerCounting(controlOptionS);
    EXPECT_TRUE(platform.answerHotKey(1, {}));
    EXPECT_EQ(manager().answer(), platform::HotKeyAnswer());
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(fired, 1);
    manager().unregister();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"install handler", registersControlOptionS, "unregister key",
                                                          "remove handler"}));
}

TEST_F(HotkeyManagerTest, NoAnswerComesToWhatWasReplacedOrEnded) {
    platform.hotKeyStatus.reset();
    const platform::HotKeyAnswer refusal{platform::hotKeyExistsError, {}};
    registerCounting(controlOptionS);
    registerCounting(controlF8);
    EXPECT_FALSE(platform.answerHotKey(1, refusal));
    EXPECT_EQ(manager().answer(), std::nullopt);
    manager().unregister();
    EXPECT_FALSE(platform.answerHotKey(2, refusal));
    registerCounting(controlOptionS);
    HotkeyManager::endShared();
    EXPECT_FALSE(platform.answerHotKey(3, refusal));
    EXPECT_TRUE(platform.entries("log").empty());
}

TEST_F(HotkeyManagerTest, AnotherTriggerIsKeptForAsLongAsItHolds) {
    registerCounting(controlOptionS);
    EXPECT_EQ(manager().answer(), platform::HotKeyAnswer());
    platform.answerHotKey(1, {platform::noErr, "Press Ctrl+F9"});
    EXPECT_EQ(manager().answer()->otherTrigger, "Press Ctrl+F9");
    platform.answerHotKey(1, {});
    EXPECT_EQ(manager().answer()->otherTrigger, "");
    platform.answerHotKey(1, {platform::noErr, "Press Ctrl+F10"});
    manager().unregister();
    EXPECT_EQ(manager().answer(), std::nullopt);
    EXPECT_TRUE(platform.entries("log").empty());
}

TEST_F(HotkeyManagerTest, TellsWhatTheDesktopSays) {
    using platform::HotKeyAnswer;
    std::vector<std::optional<HotKeyAnswer>> told;
    const Subscription listening =
        manager().answers().subscribe([&told](const std::optional<HotKeyAnswer>& answer) { told.push_back(answer); });
    EXPECT_EQ(told.size(), 1U) << "what it is now";
    platform.hotKeyStatus.reset();
    registerCounting(controlOptionS);
    const HotKeyAnswer other{platform::noErr, "Press Ctrl+F9"};
    platform.answerHotKey(1, other);
    platform.answerHotKey(1, other);
    manager().unregister();
    EXPECT_EQ(told, (std::vector<std::optional<HotKeyAnswer>>{std::nullopt, other, std::nullopt}));
}

TEST_F(HotkeyManagerTest, WhatIsTakenBackStaysRegisteredAndMayComeAgain) {
    registerCounting(controlOptionS);
    for (const platform::Status status : {platform::hotKeyExistsError, platform::hotKeyInvalidError, platform::noErr}) {
        EXPECT_TRUE(platform.answerHotKey(1, {status, {}}));
        EXPECT_EQ(manager().answer()->status, status);
    }
    EXPECT_TRUE(platform.entries("log").empty());
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(fired, 1);
    manager().unregister();
    EXPECT_EQ(platform.count("unregister key"), 1);
}

TEST_F(HotkeyManagerTest, ActionComesInALaterTurn) {
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.pressHotKey(ours), platform::noErr);
    EXPECT_EQ(fired, 0);
    platform.loop.runDue();
    EXPECT_EQ(fired, 1);
    platform.pressHotKey(ours);
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(fired, 3);
}

TEST_F(HotkeyManagerTest, AnotherSignatureIsNotOurs) {
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.pressHotKey({HotkeyManager::hotKeySignature + 1, HotkeyManager::hotKeyNumber}), platform::noErr);
    EXPECT_EQ(platform.pressHotKey({0, HotkeyManager::hotKeyNumber}), platform::noErr);
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);
}

TEST_F(HotkeyManagerTest, NumberIsNotCompared) {
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.pressHotKey({HotkeyManager::hotKeySignature, 99}), platform::noErr);
    platform.loop.runDue();
    EXPECT_EQ(fired, 1);
}

TEST_F(HotkeyManagerTest, CallWithoutAnEventIsHandledAndDoesNothing) {
    registerCounting(controlOptionS);
    EXPECT_EQ(platform.callHandlerWithoutEvent(), platform::noErr);
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);
}

TEST_F(HotkeyManagerTest, ActionThatIsSetAtThatMomentRuns) {
    registerCounting(controlOptionS);
    platform.pressHotKey(ours);
    manager().unregister();
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);

    int second = 0;
    registerCounting(controlOptionS);
    platform.pressHotKey(ours);
    manager().register_(controlF8, [&second] { ++second; });
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(HotkeyManagerTest, MissingActionIsNotRun) {
    manager().register_(controlOptionS, nullptr);
    EXPECT_EQ(platform.pressHotKey(ours), platform::noErr);
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);
}

TEST_F(HotkeyManagerTest, ActionMayReplaceOrEndItsOwnRegistration) {
    manager().register_(controlOptionS, [this] {
        registerCounting(controlF8);
        ++fired;
    });
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(fired, 1);
    manager().register_(controlOptionS, [this] {
        manager().unregister();
        ++fired;
    });
    platform.pressHotKey(ours);
    platform.loop.runDue();
    EXPECT_EQ(fired, 2);
    EXPECT_TRUE(platform.handlers.empty());
}

TEST_F(HotkeyManagerTest, EndOfTheInstanceUnregisters) {
    registerCounting(controlOptionS);
    platform.pressHotKey(ours);
    platform.journal.clear();
    HotkeyManager::endShared();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"unregister key", "remove handler"}));
    platform.loop.runDue();
    EXPECT_EQ(fired, 0);
    platform.journal.clear();
    HotkeyManager::endShared();
    EXPECT_TRUE(platform.journal.empty());
}

TEST(HotkeyManagerDeathTest, EndsQuietlyWithoutAPlatformWhenNothingIsRegistered) {
    EXPECT_EXIT(
        {
            HotkeyManager::shared();
            HotkeyManager::endShared();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^$");
}

} // namespace velloran
