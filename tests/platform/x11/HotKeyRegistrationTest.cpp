#include "platform/x11/HotKeyDesktop.h"

namespace velloran::tests {

using namespace platform;
using Kind = observer::InputEvent::Kind;

TEST_F(HotKeyTest, ATakenCombinationIsRefusedAndNothingStaysGrabbed) {
    // Only one of the states is taken, so that others could be grabbed before it.
    ASSERT_TRUE(user->grabKey(f8Key, controlBit | capsLock));
    EXPECT_EQ(statusOf(f8, controlModifier), hotKeyExistsError);
    settle();
    EXPECT_TRUE(isFree(f8Key, controlBit));
    EXPECT_TRUE(isFree(f8Key, controlBit | numLock));
    EXPECT_TRUE(isFree(f8Key, controlBit | numLock | capsLock));
    EXPECT_EQ(hotKeyExistsError, -9878);

    user->ungrabKey(f8Key, controlBit | capsLock);
    registered(f8, controlModifier);
    user->tap(f8Key, {controlKey});
    EXPECT_TRUE(untilFired(1));
}

TEST_F(HotKeyTest, OwnCombinationsAreTakenAsWell) {
    Subscription& first = registered(f8, controlModifier);
    EXPECT_EQ(statusOf(f8, controlModifier), hotKeyExistsError);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    first.cancel();
    EXPECT_EQ(statusOf(f8, controlModifier), noErr);
}

TEST_F(HotKeyTest, UnregisteringFreesTheCombination) {
    Subscription& hotKey = registered(f8, controlModifier);
    EXPECT_FALSE(isFree(f8Key, controlBit));
    EXPECT_FALSE(isFree(f8Key, controlBit | capsLock | numLock));
    hotKey.cancel();
    hotKey.cancel();
    settle();
    EXPECT_TRUE(isFree(f8Key, controlBit));
    EXPECT_TRUE(isFree(f8Key, controlBit | capsLock | numLock));
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(until([this] {
        return !events.empty() && events.back().kind == Kind::keyRelease && events.back().code == controlKey;
    }));
    EXPECT_TRUE(fired.empty());
}

TEST_F(HotKeyTest, EndingThePlatformFreesTheCombination) {
    registered(f8, controlModifier);
    x11.reset();
    EXPECT_TRUE(until([this] { return isFree(f8Key, controlBit); }));
}

TEST_F(HotKeyTest, KeysThatDoNotExistAreRefused) {
    EXPECT_EQ(hotKeyInvalidError, -9879);
    for (const std::uint32_t key : {52U, 128U, 0x1000U, 0xFFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(statusOf(key, controlModifier), hotKeyInvalidError) << key;
    }
    constexpr std::uint32_t functionKeyOfPortables = 63;
    EXPECT_EQ(statusOf(functionKeyOfPortables, controlModifier), hotKeyInvalidError) << "beyond what X can carry";
}

TEST_F(HotKeyTest, RemovedHandlersAreNotCalled) {
    int calls = 0;
    Subscription self;
    self = x11->hotKeys().installHandler([&](const HotKeyEvent*) {
        ++calls;
        self.cancel();
        return noErr;
    });
    registered(f8, controlModifier);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(2));
    settle();
    EXPECT_EQ(calls, 1);
}

TEST_F(HotKeyTest, AHandlerMayReplaceTheHotKey) {
    Subscription& hotKey = registered(f8, controlModifier);
    const Subscription replacing = x11->hotKeys().installHandler([&](const HotKeyEvent* event) {
        if (event->hotKeyId == ourId) {
            hotKey.cancel();
            registered(f9, controlModifier, {1, 9});
        }
        return noErr;
    });
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    user->tap(f9Key, {controlKey});
    ASSERT_TRUE(untilFired(2));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, {1, 9}}));
}

TEST_F(HotKeyTest, FollowsModifiersToOtherBits) {
    registered(f8, controlModifier);
    registered(letterS, commandModifier, {1, 2});
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "clear mod2", "-e", "clear mod3", "-e", "clear mod4", "-e",
                           "add mod3 = Num_Lock", "-e", "add mod2 = Super_L"}),
              0);
    settle();
    EXPECT_FALSE(isFree(f8Key, controlBit | mod3));
    EXPECT_TRUE(isFree(f8Key, controlBit | numLock)) << "its old bit is no lock any more";
    user->lockModifiers(mod3, true);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    user->tap(sKey, {superKey});
    ASSERT_TRUE(untilFired(2));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, {1, 2}}));
}

TEST_F(HotKeyTest, AfterAMoveOntoATakenCombinationTheNextChangeIsTheNextChance) {
    registered(letterS, commandModifier);
    ASSERT_TRUE(user->grabKey(sKey, mod3));
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "clear mod4", "-e", "clear mod3", "-e", "add mod3 = Super_L"}), 0);
    settle();
    EXPECT_TRUE(until([this] { return isFree(sKey, mod3 | capsLock); })) << "all of it or nothing";
    EXPECT_EQ(answers, (std::vector<HotKeyAnswer>{{}, {hotKeyExistsError, {}}}));
    user->ungrabKey(sKey, mod3);
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "add mod3 = Super_R"}), 0);
    settle();
    EXPECT_EQ(answers, (std::vector<HotKeyAnswer>{{}, {hotKeyExistsError, {}}, {}}));
    user->tap(sKey, {superKey});
    EXPECT_TRUE(untilFired(1));
}

TEST_F(HotKeyTest, AReceiverMayEndItsHotKeyAndAnotherThatWasTakenBackWithIt) {
    std::vector<Subscription> own(2);
    int times = 0;
    for (Subscription& hotKey : own) {
        const std::uint32_t modifiers = &hotKey == own.data() ? commandModifier : commandModifier | shiftModifier;
        hotKey = x11->hotKeys().registerHotKey(
            letterS, modifiers, ourId, [&own, &times, one = std::make_shared<int>(1)](const HotKeyAnswer& answer) {
                if (answer.status != noErr) {
                    own.clear();
                    times += *one;
                }
            });
    }
    ASSERT_TRUE(user->grabKey(sKey, mod3));
    ASSERT_TRUE(user->grabKey(sKey, mod3 | shiftBit));
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "clear mod4", "-e", "clear mod3", "-e", "add mod3 = Super_L"}), 0);
    ASSERT_TRUE(until([&times] { return times > 0; }));
    settle();
    EXPECT_EQ(times, 1);
    user->ungrabKey(sKey, mod3);
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "add mod3 = Super_R"}), 0);
    settle();
    EXPECT_TRUE(isFree(sKey, mod3)) << "it does not come again";
}

TEST_F(HotKeyTest, StaysThroughChangesOfTheLayout) {
    registered(letterS, controlModifier | optionModifier);
    std::size_t times = 0;
    for (const char* const layout : {"de", "fr", "us,ru", "us"}) {
        ASSERT_EQ(runOnServer({"setxkbmap", "-layout", layout}), 0);
        user->tap(sKey, {controlKey, altKey});
        ASSERT_TRUE(untilFired(++times)) << layout;
    }
    settle();
    EXPECT_EQ(fired.size(), 4U);
}

} // namespace velloran::tests
