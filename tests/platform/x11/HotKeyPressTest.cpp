#include "platform/x11/HotKeyDesktop.h"

namespace velloran::tests {

using namespace platform;
using Kind = observer::InputEvent::Kind;

TEST_F(HotKeyTest, FiresWhileAnotherWindowHasTheFocusWhichDoesNotSeeTheKey) {
    registered(f8, controlModifier);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    EXPECT_EQ(fired.front(), ourId);
    user->tap(f9Key);
    ASSERT_TRUE(until(
        [this] { return !events.empty() && events.back().code == f9Key && events.back().kind == Kind::keyRelease; }));
    for (const auto& event : events) {
        EXPECT_NE(event.code, f8Key);
    }
    EXPECT_EQ(fired.size(), 1U);
}

TEST_F(HotKeyTest, FiresWithEveryCombinationOfLocks) {
    registered(f8, controlModifier);
    std::size_t times = 0;
    for (const unsigned locks : {0U, capsLock, numLock, capsLock | numLock}) {
        user->lockModifiers(capsLock | numLock, false);
        user->lockModifiers(locks, true);
        ASSERT_EQ(other->modifiers(), locks);
        user->tap(f8Key, {controlKey});
        ASSERT_TRUE(untilFired(++times)) << "locks " << locks;
    }
    EXPECT_EQ(fired.size(), 4U);
}

TEST_F(HotKeyTest, FiresWithScrollLockWhereThatIsAModifier) {
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "add mod3 = Scroll_Lock"}), 0);
    settle();
    registered(f8, controlModifier);
    user->lockModifiers(mod3 | numLock | capsLock, true);
    user->tap(f8Key, {controlKey});
    EXPECT_TRUE(untilFired(1));
}

TEST_F(HotKeyTest, EachModifierIsItsKey) {
    const std::vector<std::pair<std::uint32_t, std::uint8_t>> modifiers{{controlModifier, controlKey},
                                                                        {optionModifier, altKey},
                                                                        {shiftModifier, shiftKey},
                                                                        {commandModifier, superKey}};
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        registered(letterS, modifiers[i].first, {1, i});
    }
    registered(letterS, controlModifier | optionModifier | shiftModifier | commandModifier, {1, 4});
    for (std::uint32_t i = 0; i < modifiers.size(); ++i) {
        fired.clear();
        user->tap(sKey, {modifiers[i].second});
        ASSERT_TRUE(untilFired(1));
        EXPECT_EQ(fired, (std::vector<HotKeyId>{{1, i}}));
    }
    fired.clear();
    user->tap(sKey, {controlKey, altKey, shiftKey, superKey});
    ASSERT_TRUE(untilFired(1));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{{1, 4}}));
}

TEST_F(HotKeyTest, OtherModifiersAndNoneGoToTheWindow) {
    registered(letterS, controlModifier | optionModifier);
    user->tap(sKey);
    user->tap(sKey, {controlKey});
    user->tap(sKey, {controlKey, altKey, shiftKey});
    ASSERT_TRUE(until([this] {
        std::size_t letters = 0;
        for (const auto& event : events) {
            letters += event.kind == Kind::keyRelease && event.code == sKey ? 1U : 0U;
        }
        return letters == 3;
    }));
    settle();
    EXPECT_TRUE(fired.empty());
}

TEST_F(HotKeyTest, AHeldKeyFiresOnce) {
    user->setRepeat(50, 10);
    // What the server does to a key that nobody has grabbed.
    user->key(f9Key, true);
    ASSERT_TRUE(until([this] { return count(Kind::keyPress) > 10; })) << "the server repeats held keys";
    user->key(f9Key, false);

    registered(f8, controlModifier);
    registered(f9, controlModifier, {1, 9});
    for (std::size_t times = 1; times <= 3; ++times) {
        user->key(controlKey, true);
        user->key(f8Key, true);
        during(0.4);
        // The key goes on repeating when the modifier is let go of first.
        user->key(controlKey, false);
        during(0.2);
        user->key(f8Key, false);
        settle();
        EXPECT_EQ(fired.size(), times);
    }
    // Everything before has been dealt with when this arrives.
    user->tap(f9Key, {controlKey});
    ASSERT_TRUE(untilFired(4));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, ourId, ourId, {1, 9}}));
}

TEST_F(HotKeyTest, QuickPressesAllCount) {
    registered(f8, controlModifier);
    for (int i = 0; i < 50; ++i) {
        user->tap(f8Key, {controlKey});
    }
    ASSERT_TRUE(untilFired(50));
    settle();
    EXPECT_EQ(fired.size(), 50U);
}

TEST_F(HotKeyTest, KeysThatAreStillHeldFromRecordingAreNoPress) {
    user->setRepeat(50, 10);
    user->key(controlKey, true);
    user->key(f8Key, true);
    ASSERT_TRUE(until([this] { return count(Kind::keyPress) > 5; }));
    registered(f8, controlModifier);
    during(0.3);
    EXPECT_TRUE(fired.empty());
    user->key(f8Key, false);
    user->key(controlKey, false);
    // Its release may have gone to the window.
    during(pauseBetweenPresses);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    settle();
    EXPECT_EQ(fired.size(), 1U);
}

TEST_F(HotKeyTest, AKeyWhoseReleaseWentElsewhereIsNotDead) {
    registered(f8, controlModifier);
    registered(letterS, controlModifier, {1, 2});
    // The second key comes here because the first one's grab is in force, and its release does not, because that has
    // ended.
    user->key(controlKey, true);
    user->key(f8Key, true);
    user->key(sKey, true);
    ASSERT_TRUE(untilFired(2));
    user->key(f8Key, false);
    user->key(sKey, false);
    user->key(controlKey, false);
    during(pauseBetweenPresses);
    user->tap(sKey, {controlKey});
    ASSERT_TRUE(untilFired(3));
    settle();
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, {1, 2}, {1, 2}}));
}

TEST_F(HotKeyTest, FiresInTheSecondLayoutGroup) {
    registered(letterS, controlModifier | optionModifier);
    ASSERT_EQ(runOnServer({"setxkbmap", "-layout", "us,ru"}), 0);
    user->lockGroup(1);
    user->lockModifiers(capsLock | numLock, true);
    user->tap(sKey, {controlKey, altKey});
    EXPECT_TRUE(untilFired(1));
}

} // namespace velloran::tests
