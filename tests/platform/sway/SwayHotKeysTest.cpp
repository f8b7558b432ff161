#include "platform/sway/SwayHotKeysTest.h"

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace velloran::tests {

TEST_F(SwayHotKeysTest, FiresOnceAPressAndTheWindowDoesNotSeeTheKey) {
    const Subscription hotKey = registered(f8, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(2));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, ourId}));
    EXPECT_EQ(witness->keyPresses(), 0U);
    witness->tap(f8.code, 0);
    witness->tap(f8.code, controlBit | shiftBit);
    witness->tap(f9.code, controlBit);
    EXPECT_EQ(witness->keyPresses(), 3U) << "other combinations are nobody's";
    idle();
    EXPECT_EQ(fired.size(), 2U);
}

TEST_F(SwayHotKeysTest, AHeldKeyFiresOnce) {
    ASSERT_TRUE(ownSway->command("input * repeat_delay 50"));
    ASSERT_TRUE(ownSway->command("input * repeat_rate 100"));
    const Subscription hotKey = registered(f8, controlModifier);
    witness->press(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    EXPECT_TRUE(untilWokenUp(10)) << "the repetitions come, and count for nothing";
    EXPECT_EQ(fired.size(), 1U);
    witness->release(f8.code, controlBit);
    idle();
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(2));
}

TEST_F(SwayHotKeysTest, EachModifierIsItsKey) {
    std::vector<Subscription> hotKeysHeld;
    const std::vector<std::pair<std::uint32_t, unsigned>> modifiers{
        {controlModifier, controlBit},
        {optionModifier, altBit},
        {shiftModifier, shiftBit},
        {commandModifier, superBit},
        {controlModifier | optionModifier, controlBit | altBit}};
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        hotKeysHeld.push_back(registered(letterS, modifiers[i].first, {1, i}));
    }
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        fired.clear();
        witness->tap(letterS.code, modifiers[i].second);
        ASSERT_TRUE(untilFired(1)) << i;
        EXPECT_EQ(fired, (std::vector<HotKeyId>{{1, i}}));
    }
}

TEST_F(SwayHotKeysTest, FiresWithCapsLock) {
    const Subscription hotKey = registered(f8, controlModifier);
    witness->tap(f8.code, controlBit | capsLockBit);
    EXPECT_TRUE(untilFired(1));
}

TEST_F(SwayHotKeysTest, TheKeyIsGivenBackWithTheResult) {
    Subscription hotKey = registered(f8, controlModifier);
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    hotKey.cancel();
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
    EXPECT_EQ(fired.size(), 1U);
    const Subscription again = registered(f8, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{noErr});
    witness->tap(f8.code, controlBit);
    EXPECT_TRUE(untilFired(2));
}

TEST_F(SwayHotKeysTest, TheKeyIsGivenBackWithEverything) {
    Subscription hotKey = registered(f8, controlModifier);
    hotKeys.reset();
    const std::size_t before = witness->keyPresses();
    witness->tap(f8.code, controlBit);
    EXPECT_EQ(witness->keyPresses(), before + 1) << "at once";
    hotKey.cancel();
}

TEST_F(SwayHotKeysTest, AReloadIsOutlived) {
    const Subscription hotKey = registered(f8, controlModifier);
    for (std::size_t round = 1; round <= 2; ++round) {
        ASSERT_TRUE(ownSway->command("reload"));
        const std::size_t before = fired.size();
        ASSERT_TRUE(until([&] {
            witness->tap(f8.code, controlBit);
            return fired.size() > before;
        }));
    }
    idle();
    EXPECT_EQ(answers, std::vector<Status>{noErr}) << "nothing has changed";
}

TEST_F(SwayHotKeysTest, ItsOwnCombinationIsTaken) {
    const Subscription hotKey = registered(f8, controlModifier);
    const Subscription second = registered(f8, controlModifier, {1, 2});
    EXPECT_EQ(answers, std::vector<Status>{hotKeyExistsError});
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    EXPECT_EQ(fired, std::vector<HotKeyId>{ourId});
}

TEST_F(SwayHotKeysTest, WhatAKilledProgramHasLeftBehindFiresNothing) {
    ASSERT_TRUE(ownSway->command("bindcode Control+75 nop velloran 1 1 pressed"));
    ASSERT_TRUE(ownSway->command("bindcode Mod1+75 nop velloran pressed 1"));
    const Subscription hotKey = registered(f8, controlModifier);
    witness->tap(f9.code, controlBit);
    witness->tap(f9.code, altBit);
    witness->tap(f8.code, controlBit);
    ASSERT_TRUE(untilFired(1));
    idle();
    EXPECT_EQ(fired.size(), 1U);
}

TEST_F(SwayHotKeysTest, AKeyThatIsNoneIsRefused) {
    const Subscription hotKey = registered({0xFFFF, 0}, controlModifier);
    EXPECT_EQ(answers, std::vector<Status>{hotKeyInvalidError});
}

TEST_F(SwayHotKeysTest, AnAnswerThatComesTooLateIsNotHeard) {
    ownSway->pause();
    {
        const Subscription hotKey = hotKeys->registerHotKey(
            f8.number, controlModifier, ourId, [this](const auto& answer) { answers.push_back(answer.status); });
    }
    ownSway->goOn();
    const Subscription other =
        hotKeys->registerHotKey(f9.number, controlModifier, ourId, [this](const auto&) { fired.push_back({}); });
    ASSERT_TRUE(untilFired(1));
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(untilWindowGets(f8, controlBit));
}

TEST_F(SwayHotKeysTest, WithItsEndTheHotKeyIsTakenBackOnce) {
    const Subscription hotKey = registered(f8, controlModifier);
    ownSway->crash();
    ASSERT_TRUE(until([this] { return answers.size() > 1; }));
    idle();
    EXPECT_EQ(answers, (std::vector<Status>{noErr, hotKeyInvalidError}));
    EXPECT_LT(turnsDuring(0.2), 10) << "a broken connection can be read for ever";
}

TEST_F(SwayHotKeysTest, AnEndThatIsNotAnsweredIsNotWaitedForLong) {
    const Subscription hotKey = registered(f8, controlModifier);
    ownSway->pause();
    const auto start = std::chrono::steady_clock::now();
    hotKeys.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    ownSway->goOn();
}

TEST_F(SwayHotKeysTest, WhereNobodyTakesCommandsEverythingIsRefused) {
    SwayHotKeys nowhere(loop, "/no/such/socket", {});
    EXPECT_FALSE(nowhere.isConnected());
    std::optional<Status> status;
    const Subscription hotKey = nowhere.registerHotKey(f8.number, controlModifier, ourId,
                                                       [&](const HotKeyAnswer& answer) { status = answer.status; });
    EXPECT_EQ(status, hotKeyInvalidError);
}

} // namespace velloran::tests
