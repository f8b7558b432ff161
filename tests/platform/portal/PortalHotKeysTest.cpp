#include "platform/portal/PortalHotKeys.h"

#include "platform/portal/ShortcutsBench.h"

#include <memory>

namespace velloran::tests {
namespace {

using platform::HotKeyAnswer;
using platform::hotKeyExistsError;
using platform::hotKeyInvalidError;
using platform::HotKeys;
using platform::portal::PortalHotKeys;

using PortalHotKeysTest = ShortcutsBench;

const HotKeyAnswer refusal{hotKeyInvalidError, {}};

TEST_F(PortalHotKeysTest, AreThereWithThePortal) {
    EXPECT_FALSE(isOffered());
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_FALSE(hotKeys.part().get().isAwaited);
    EXPECT_EQ(hotKeys.part().get().limit, "");
    EXPECT_EQ(hotKeys.part().get().reason,
              "The hotkey is a shortcut of the desktop's portal, which may ask before it binds one.");
    fake->vanish();
    ASSERT_TRUE(until([this] { return !isOffered(); }));
    EXPECT_FALSE(hotKeys.part().get().isAwaited);
    EXPECT_EQ(hotKeys.part().get().limit,
              "The global hotkey does not work here: the desktop's portal does not answer.");
}

TEST_F(PortalHotKeysTest, AreAwaitedUntilItIsKnownThatThereIsNoPortal) {
    EXPECT_TRUE(hotKeys.part().get().isAwaited);
    EXPECT_NE(hotKeys.part().get().reason, "");
    ASSERT_TRUE(until([this] { return !hotKeys.part().get().isAwaited; }));
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(hotKeys.part().get().limit, "The global hotkey does not work here.");
    ASSERT_NO_FATAL_FAILURE(bring());
}

TEST_F(PortalHotKeysTest, AreAwaitedForHalfAMinuteAtMost) {
    fake.emplace(bus.address(), SettingGroups(), FakePortal::Manner::staysSilent);
    ASSERT_TRUE(until([this] { return fake->calls.contains("org.freedesktop.portal.GlobalShortcuts"); }));
    PortalHotKeys asking(loop, portal, {}, nullptr);
    EXPECT_TRUE(asking.part().get().isAwaited);
    loop.advance(29);
    EXPECT_TRUE(asking.part().get().isAwaited);
    loop.advance(2);
    EXPECT_FALSE(asking.part().get().isAwaited);
    EXPECT_EQ(asking.part().get().part, nullptr);
    EXPECT_EQ(asking.part().get().limit, "The global hotkey does not work here.");
    fake->vanish();
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_TRUE(until([&] { return asking.part().get().part != nullptr; })) << "it is heard all the same";
}

TEST_F(PortalHotKeysTest, PortalWithoutTheInterfaceHasNone) {
    fake.emplace(bus.address());
    fake->missing.append("org.freedesktop.portal.GlobalShortcuts");
    ASSERT_TRUE(until([this] {
        return hotKeys.part().get().limit == "The global hotkey does not work here: the desktop's portal offers none.";
    }));
    EXPECT_FALSE(isOffered());
    EXPECT_FALSE(hotKeys.part().get().isAwaited);
}

TEST_F(PortalHotKeysTest, NothingIsAskedBeforeSomebodyWantsOne) {
    ASSERT_NO_FATAL_FAILURE(bring());
    expectNoRequest();
}

TEST_F(PortalHotKeysTest, WhatCannotBeIsRefusedAtOnce) {
    Hotkey early;
    want(early);
    EXPECT_EQ(early.answers, std::vector{refusal}) << "there is no portal yet";
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey noKey;
    want(noKey, 999);
    EXPECT_EQ(noKey.answers, std::vector{refusal});
    expectNoRequest();
}

TEST_F(PortalHotKeysTest, OneThatIsHeldAlreadyIsTaken) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey first;
    ASSERT_NO_FATAL_FAILURE(bind(first));
    Hotkey second;
    want(second);
    EXPECT_EQ(second.answers, std::vector({HotKeyAnswer{hotKeyExistsError, {}}}));
    expectNoRequest();
    first.registered.cancel();
    ASSERT_NO_FATAL_FAILURE(bind(second));
}

TEST_F(PortalHotKeysTest, TwoAreToldApart) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey f8;
    ASSERT_NO_FATAL_FAILURE(bind(f8));
    const QString ofF8 = sessionPath;
    Hotkey f9;
    want(f9, keyF9);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(0, shortcut("toggle-ctrl-f9", "Ctrl+F9"));
    ASSERT_TRUE(until([&] { return f9.last() == HotKeyAnswer(); }));
    fake->closeSession(ofF8);
    ASSERT_TRUE(until([&] { return f8.last() == refusal; }));
    press("toggle-ctrl-f9");
    EXPECT_EQ(presses.size(), 1U);
    EXPECT_EQ(f9.answers.size(), 1U);
}

TEST_F(PortalHotKeysTest, KilledPortalTakesItAndTheNextBindsItAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    fake->vanish();
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    answered = 0;
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    ASSERT_NO_FATAL_FAILURE(grant(hotkey));
    press();
    EXPECT_EQ(presses.size(), 1U);
    EXPECT_EQ(hotkey.answers.size(), 3U);
}

TEST_F(PortalHotKeysTest, BusThatEndsTakesItAndTheNextBindsItAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    bus.end();
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    fake.reset();
    answered = 0;
    bus.start();
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    ASSERT_NO_FATAL_FAILURE(grant(hotkey));
    press();
    EXPECT_EQ(presses.size(), 1U);
}

/// The way of whoever follows the part: registered with it, let go with it.
class FollowedPortalHotKeysTest : public PortalHotKeysTest {
protected:
    Hotkey hotkey;
    Subscription following = hotKeys.part().stream().subscribe([this](const platform::DesktopPart<HotKeys>& part) {
        hotkey.registered.cancel();
        if (part.part) {
            hotkey.answers.clear();
            want(hotkey);
        }
    });
};

TEST_F(FollowedPortalHotKeysTest, IsBoundByEachPortal) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    ASSERT_NO_FATAL_FAILURE(grant(hotkey));
    for (int portals = 0; portals < 5; ++portals) {
        ASSERT_NO_FATAL_FAILURE(restartPortal());
        ASSERT_NO_FATAL_FAILURE(reachDialog());
        ASSERT_NO_FATAL_FAILURE(grant(hotkey));
    }
}

TEST_F(FollowedPortalHotKeysTest, RefusedOnceNobodyIsAskedByThePortalsThatFollow) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(1);
    ASSERT_TRUE(until([this] { return hotkey.last() == refusal; }));
    ASSERT_NO_FATAL_FAILURE(restartPortal());
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    expectNoRequest();
}

TEST_F(FollowedPortalHotKeysTest, RefusedOnceItIsAskedForWhenTheUserWantsItAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(1);
    ASSERT_TRUE(until([this] { return hotkey.last() == refusal; }));
    ASSERT_NO_FATAL_FAILURE(restartPortal());
    hotkey.registered.cancel();
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
}

TEST_F(FollowedPortalHotKeysTest, PortalThatDiesOfTheQuestionIsNotAskedForEver) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    for (int times = 1; times < 3; ++times) {
        ASSERT_NO_FATAL_FAILURE(restartPortal());
        ASSERT_NO_FATAL_FAILURE(reachDialog());
        EXPECT_TRUE(hotkey.answers.empty());
    }
    ASSERT_NO_FATAL_FAILURE(restartPortal());
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    expectNoRequest();
}

/// A back end whose comings and goings the portal does not tell of.
class PortalBackEndTest : public PortalHotKeysTest {
protected:
    PortalBackEndTest() = default;
    PortalBackEndTest(const PortalBackEndTest&) = delete;
    PortalBackEndTest& operator=(const PortalBackEndTest&) = delete;

    ~PortalBackEndTest() override { QDBusConnection::disconnectFromBus("back end"); }

    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(startBackEnd());
        ASSERT_NO_FATAL_FAILURE(bring());
        ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    }

    void startBackEnd() { ASSERT_TRUE(other.registerService(backEndName)); }

    void endBackEnd() { ASSERT_TRUE(other.unregisterService(backEndName)); }

    /// The portal is asked whether the shortcut is still there, and has nothing.
    void findNothing() {
        ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
        respond(2);
        ASSERT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    }

    QDBusConnection other = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "back end");
    Hotkey hotkey;
};

TEST_F(PortalBackEndTest, IsAskedForAnewWhenItIsBack) {
    endBackEnd();
    ASSERT_NO_FATAL_FAILURE(findNothing());
    EXPECT_EQ(hotkey.last(), refusal);
    ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
    respond(2);
    expectNoRequest();
    startBackEnd();
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    ASSERT_NO_FATAL_FAILURE(grant(hotkey));
    press();
    EXPECT_EQ(presses.size(), 1U);
    EXPECT_EQ(hotkey.answers.size(), 3U);
}

TEST_F(PortalBackEndTest, BackWhileItIsAskedForItIsAskedForOnceMore) {
    endBackEnd();
    ASSERT_NO_FATAL_FAILURE(findNothing());
    ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
    startBackEnd();
    settle();
    respond(2);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    ASSERT_NO_FATAL_FAILURE(grant(hotkey));
}

TEST_F(PortalBackEndTest, AnotherThatGoesTakesNothing) {
    endBackEnd();
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    respond(0, shortcut("toggle-ctrl-f8", "Ctrl+F8"));
    settle();
    EXPECT_EQ(hotkey.answers, std::vector{HotKeyAnswer()});
    expectNoRequest();
    press();
    EXPECT_EQ(presses.size(), 1U);
    fake->closeSession(sessionPath);
    ASSERT_TRUE(until([this] { return hotkey.last() == refusal; }));
    expectNoRequest();
}

TEST_F(PortalBackEndTest, RefusedItIsNotAskedForWhenItIsBack) {
    endBackEnd();
    ASSERT_NO_FATAL_FAILURE(findNothing());
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(1);
    ASSERT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    startBackEnd();
    expectNoRequest();
    EXPECT_EQ(hotkey.answers.size(), 2U);
}

TEST_F(PortalBackEndTest, ThatDiesOfTheQuestionIsNotAskedForEver) {
    endBackEnd();
    ASSERT_NO_FATAL_FAILURE(findNothing());
    for (int times = 0; times < 3; ++times) {
        ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
        startBackEnd();
        endBackEnd();
        settle();
        respond(2);
    }
    expectNoRequest();
    startBackEnd();
    expectNoRequest();
    EXPECT_EQ(hotkey.answers, (std::vector{HotKeyAnswer(), refusal}));
}

} // namespace
} // namespace velloran::tests
