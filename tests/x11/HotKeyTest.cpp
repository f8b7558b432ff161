#include "platform/HotKeys.h"
#include "support/Desktop.h"

namespace velloran::tests {

using namespace platform;
using Kind = observer::InputEvent::Kind;

namespace {

constexpr std::uint32_t f8 = 100;
constexpr std::uint32_t f9 = 101;
constexpr std::uint32_t letterS = 1;
constexpr HotKeyId ourId{0x564C524E, 1};

} // namespace

class HotKeyTest : public Desktop {
protected:
    void SetUp() override {
        Desktop::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        openWindow();
        x11->hotKeys().installHandler([this](const HotKeyEvent* event) {
            fired.push_back(event->hotKeyId);
            return noErr;
        });
    }

    HotKeys::Reference registered(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id = ourId) {
        HotKeys::Reference reference = 0;
        EXPECT_EQ(x11->hotKeys().registerHotKey(keyCode, modifiers, id, reference), noErr);
        EXPECT_NE(reference, 0U);
        return reference;
    }

    Status statusOf(std::uint32_t keyCode, std::uint32_t modifiers) {
        HotKeys::Reference reference = 0;
        const Status status = x11->hotKeys().registerHotKey(keyCode, modifiers, ourId, reference);
        EXPECT_EQ(reference != 0, status == noErr);
        return status;
    }

    bool untilFired(std::size_t times) {
        return until([this, times] { return fired.size() >= times; });
    }

    /// Grabs and lets go again, as another program: whether nobody holds the combination.
    [[nodiscard]] bool isFree(std::uint8_t key, unsigned modifiers) const {
        const bool couldGrab = user->grabKey(key, modifiers);
        if (couldGrab) {
            user->ungrabKey(key, modifiers);
        }
        return couldGrab;
    }

    int runOnServer(std::vector<std::string> command) const {
        command.insert(command.begin(), {"env", "DISPLAY=" + server.displayName()});
        return runProgram(std::move(command));
    }

    std::vector<HotKeyId> fired;
};

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
    // Its release may have gone to the window, and is noticed a moment later.
    ASSERT_TRUE(until([this] {
        user->tap(f8Key, {controlKey});
        settle();
        return !fired.empty();
    }));
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
    ASSERT_TRUE(until([this] {
        user->tap(sKey, {controlKey});
        settle();
        return fired.size() > 2;
    }));
    EXPECT_EQ(fired, (std::vector<HotKeyId>{ourId, {1, 2}, {1, 2}}));
}

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
    const auto first = registered(f8, controlModifier);
    EXPECT_EQ(statusOf(f8, controlModifier), hotKeyExistsError);
    user->tap(f8Key, {controlKey});
    ASSERT_TRUE(untilFired(1));
    x11->hotKeys().unregisterHotKey(first);
    EXPECT_EQ(statusOf(f8, controlModifier), noErr);
}

TEST_F(HotKeyTest, UnregisteringFreesTheCombination) {
    const auto reference = registered(f8, controlModifier);
    EXPECT_FALSE(isFree(f8Key, controlBit));
    EXPECT_FALSE(isFree(f8Key, controlBit | capsLock | numLock));
    x11->hotKeys().unregisterHotKey(reference);
    x11->hotKeys().unregisterHotKey(reference);
    x11->hotKeys().unregisterHotKey(12345);
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
    HotKeys::Reference self = 0;
    self = x11->hotKeys().installHandler([&](const HotKeyEvent*) {
        ++calls;
        x11->hotKeys().removeHandler(self);
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
    HotKeys::Reference reference = registered(f8, controlModifier);
    x11->hotKeys().installHandler([&](const HotKeyEvent* event) {
        if (event->hotKeyId == ourId) {
            x11->hotKeys().unregisterHotKey(reference);
            reference = registered(f9, controlModifier, {1, 9});
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
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(HotKeyTest, AMoveOntoATakenCombinationIsLogged) {
    registered(letterS, commandModifier);
    ASSERT_TRUE(user->grabKey(sKey, mod3));
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "clear mod4", "-e", "clear mod3", "-e", "add mod3 = Super_L"}), 0);
    settle();
    ASSERT_FALSE(log.lines.empty());
    EXPECT_NE(log.lines.back().find("-9878"), std::string::npos);
    user->ungrabKey(sKey, mod3);
    // The next change is the next chance.
    ASSERT_EQ(runOnServer({"xmodmap", "-e", "add mod3 = Super_R"}), 0);
    settle();
    user->tap(sKey, {superKey});
    EXPECT_TRUE(untilFired(1));
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
    EXPECT_TRUE(log.lines.empty());
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
