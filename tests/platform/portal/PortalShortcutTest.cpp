#include "platform/portal/PortalShortcut.h"

#include "platform/portal/ShortcutsBench.h"

namespace velloran::tests {
namespace {

using platform::HotKeyAnswer;
using platform::hotKeyInvalidError;
using platform::noErr;
using platform::portal::Shortcut;
using platform::portal::ShortcutList;

const HotKeyAnswer refusal{hotKeyInvalidError, {}};

/// A portal that is there, and one wish.
class PortalShortcutTest : public ShortcutsBench {
protected:
    void SetUp() override { bring(); }

    Hotkey hotkey;
};

TEST_F(PortalShortcutTest, IsAskedForByItsCombination) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    const ShortcutList asked = platform::portal::shortcutsIn(fake->request.arguments.value(1));
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.first().identifier, "toggle-ctrl-f8");
    EXPECT_EQ(asked.first().properties.value("preferred_trigger"), "CTRL+F8");
    EXPECT_EQ(asked.first().properties.value("description"), "Start or stop clicking");
    EXPECT_EQ(fake->request.arguments.value(2), QString()) << "no window is named";
    EXPECT_TRUE(hotkey.answers.empty());
}

TEST_F(PortalShortcutTest, GrantedItIsAsWasAskedFor) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, "Press <Control>F8"));
    EXPECT_EQ(hotkey.answers, std::vector{HotKeyAnswer()});
    press();
    EXPECT_EQ(presses, std::vector{ourId});
    expectNoRequest();
}

TEST_F(PortalShortcutTest, AnotherTriggerIsToldInTheDesktopsWords) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, "Press <Control>F9"));
    EXPECT_EQ(hotkey.answers, std::vector({HotKeyAnswer{noErr, "Press <Control>F9"}}));
}

TEST_F(PortalShortcutTest, ShortcutWithoutAKeyIsTold) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, ""));
    EXPECT_EQ(hotkey.answers, std::vector({HotKeyAnswer{noErr, {}, true}}));
    press();
    EXPECT_EQ(presses.size(), 1U) << "the user may have given it one where the desktop does not look";
}

TEST_F(PortalShortcutTest, RefusedItIsNone) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(1);
    ASSERT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    press();
    EXPECT_TRUE(presses.empty());
    expectNoRequest();
}

TEST_F(PortalShortcutTest, WhatIsBoundIsBoundWhateverTheAnswer) {
    for (const uint response : {1U, 2U}) {
        Hotkey other;
        want(other);
        ASSERT_NO_FATAL_FAILURE(reachDialog());
        respond(response, shortcut("toggle-ctrl-f8", "Ctrl+F8"));
        ASSERT_TRUE(until([&] { return !other.answers.empty(); }));
        EXPECT_EQ(other.answers, std::vector{HotKeyAnswer()}) << response;
        press();
        release();
    }
    EXPECT_EQ(presses.size(), 2U);
}

TEST_F(PortalShortcutTest, WhereTheAnswerDoesNotTellTheListDoes) {
    for (const uint response : {0U, 2U}) {
        Hotkey other;
        want(other);
        ASSERT_NO_FATAL_FAILURE(reachDialog());
        respond(response);
        ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
        EXPECT_EQ(fake->request.arguments.value(0).value<QDBusObjectPath>().path(), sessionPath);
        EXPECT_TRUE(other.answers.empty());
        respond(0, shortcut("toggle-ctrl-f8", "Ctrl+F10"));
        ASSERT_TRUE(until([&] { return !other.answers.empty(); }));
        EXPECT_EQ(other.answers, std::vector({HotKeyAnswer{noErr, "Ctrl+F10"}})) << response;
    }
}

TEST_F(PortalShortcutTest, GrantOfNothingOrOfAnotherIsNone) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(0, shortcut("toggle-ctrl-f9", "Ctrl+F9"));
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    respond(0, {{"shortcuts", QVariant::fromValue(ShortcutList())}});
    ASSERT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
}

TEST_F(PortalShortcutTest, ResultsOfAnotherKindAreNone) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(0, {{"shortcuts", QStringList("toggle-ctrl-f8")}});
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    respond(0, {{"shortcuts", 7}});
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
}

TEST_F(PortalShortcutTest, SessionThatIsRefusedIsNoHotkey) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
    respond(2);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    expectNoRequest();
}

TEST_F(PortalShortcutTest, PortalThatTakesNoRequestIsNoHotkey) {
    fake->vanish();
    ASSERT_TRUE(until([this] { return !isOffered(); }));
    fake.emplace(bus.address(), SettingGroups(), FakePortal::Manner::refuses);
    ASSERT_TRUE(until([this] { return isOffered(); }));
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
}

TEST_F(PortalShortcutTest, UserMayTakeAnyTimeButNobodyElse) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    loop.advance(100'000);
    EXPECT_TRUE(hotkey.answers.empty());
    respond(0);
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    loop.advance(29);
    EXPECT_TRUE(hotkey.answers.empty());
    loop.advance(2);
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
}

TEST_F(PortalShortcutTest, SessionThatDoesNotOpenIsGivenUp) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
    loop.advance(29);
    EXPECT_TRUE(hotkey.answers.empty());
    loop.advance(2);
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
}

TEST_F(PortalShortcutTest, LateAnswerToWhatWasReplacedIsIgnored) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    const FakePortal::Request first = fake->request;
    const QString firstSession = sessionPath;
    answered = fake->requests;
    Hotkey second;
    hotkey.registered.cancel();
    want(second, keyF9);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    EXPECT_TRUE(until([&] { return fake->closed.contains(first.path) && fake->closed.contains(firstSession); }));
    const FakePortal::Request asked = std::exchange(fake->request, first);
    fake->respond(0, shortcut("toggle-ctrl-f8", "Ctrl+F8"));
    fake->tellOfShortcut("Activated", firstSession, "toggle-ctrl-f8");
    settle();
    EXPECT_TRUE(hotkey.answers.empty());
    EXPECT_TRUE(second.answers.empty());
    EXPECT_TRUE(presses.empty());
    fake->request = asked;
    respond(0, shortcut("toggle-ctrl-f9", "Ctrl+F9"));
    EXPECT_TRUE(until([&] { return second.last() == HotKeyAnswer(); }));
}

TEST_F(PortalShortcutTest, EndGivesTheKeyBack) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    hotkey.registered.cancel();
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    press();
    EXPECT_TRUE(presses.empty());
}

TEST_F(PortalShortcutTest, MayEndFromInsideItsAnswer) {
    Subscription registered;
    int answers = 0;
    registered = hotKeys.registerHotKey(keyF8, platform::controlModifier, ourId, [&](const HotKeyAnswer&) {
        ++answers;
        registered.cancel();
    });
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    respond(0, shortcut("toggle-ctrl-f8", "Ctrl+F8"));
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_EQ(answers, 1);
}

TEST_F(PortalShortcutTest, HeldItFiresOnce) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    press();
    loop.advance(0.5);
    for (int repeat = 0; repeat < 20; ++repeat) {
        press();
        loop.advance(0.1);
    }
    EXPECT_EQ(presses.size(), 1U);
    release();
    press();
    EXPECT_EQ(presses.size(), 2U);
}

TEST_F(PortalShortcutTest, ReleaseThatNobodyToldOfIsForgotten) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    press();
    loop.advance(1.5);
    press();
    EXPECT_EQ(presses.size(), 2U) << "none was ever told";
    release();
    press();
    loop.advance(2.5);
    press();
    EXPECT_EQ(presses.size(), 3U);
    loop.advance(3.5);
    press();
    EXPECT_EQ(presses.size(), 4U);
}

TEST_F(PortalShortcutTest, OnlyItsOwnPressesCount) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    press("toggle-ctrl-f9");
    fake->tellOfShortcut("Activated", sessionPath + "0", "toggle-ctrl-f8");
    QDBusMessage message =
        QDBusMessage::createTargetedSignal(session.connection().baseService(), "/org/freedesktop/portal/desktop",
                                           "org.freedesktop.portal.GlobalShortcuts", "Activated");
    message.setArguments(
        {QVariant::fromValue(QDBusObjectPath(sessionPath)), "toggle-ctrl-f8", qulonglong{1}, QVariantMap()});
    sendFromElsewhere(message);
    EXPECT_TRUE(presses.empty());
    press();
    release("toggle-ctrl-f9");
    press();
    EXPECT_EQ(presses.size(), 1U);
}

TEST_F(PortalShortcutTest, ClosedByTheDesktopItIsTakenBackAndLeftThere) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    fake->closeSession(sessionPath);
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    EXPECT_EQ(hotkey.answers.size(), 2U);
    press();
    EXPECT_TRUE(presses.empty());
    expectNoRequest();
}

TEST_F(PortalShortcutTest, ClosedWhileTheUserIsAskedItIsNone) {
    want(hotkey);
    ASSERT_NO_FATAL_FAILURE(reachDialog());
    answered = fake->requests;
    fake->closeSession(sessionPath);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    expectNoRequest();
}

TEST_F(PortalShortcutTest, UserMayGiveItAnotherKey) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    for (const auto* const words : {"Press F9", "Press F9", "Press <Control>F8"}) {
        fake->changeShortcuts(sessionPath, shortcut("toggle-ctrl-f8", words).value("shortcuts"));
        settle();
    }
    EXPECT_EQ(hotkey.answers, (std::vector{HotKeyAnswer(), HotKeyAnswer{noErr, "Press F9"}, HotKeyAnswer()}));
}

TEST_F(PortalShortcutTest, UserMayTakeItAwayAndGiveItBack) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    const QVariant none = QVariant::fromValue(ShortcutList());
    fake->changeShortcuts(sessionPath, none);
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    EXPECT_EQ(hotkey.answers.size(), 1U) << "it may not have been told of all";
    respond(0, {{"shortcuts", none}});
    ASSERT_TRUE(until([&] { return hotkey.last() == refusal; }));
    fake->changeShortcuts(sessionPath, shortcut("toggle-ctrl-f8", "Ctrl+F8").value("shortcuts"));
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    press();
    EXPECT_EQ(presses.size(), 1U);
}

TEST_F(PortalShortcutTest, WhatChangedOfOthersChangesNothing) {
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    fake->changeShortcuts(sessionPath, shortcut("another", "F9").value("shortcuts"));
    ASSERT_NO_FATAL_FAILURE(expectRequest("ListShortcuts"));
    respond(0, shortcut("toggle-ctrl-f8", "Ctrl+F8"));
    settle();
    EXPECT_EQ(hotkey.answers, std::vector{HotKeyAnswer()});
}

} // namespace
} // namespace velloran::tests
