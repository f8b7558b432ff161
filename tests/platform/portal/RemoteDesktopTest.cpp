#include "platform/portal/RemoteDesktop.h"

#include "platform/portal/InputBench.h"

#include <QFile>

namespace velloran::tests {
namespace {

using namespace platform::portal;
using platform::EventButton;
using platform::PromptReason;

const QStringList oneClick{"272 down", "272 up"};

using RemoteDesktopTest = InputBench;

TEST_F(RemoteDesktopTest, IsThereWithThePortal) {
    EXPECT_FALSE(isOffered());
    EXPECT_NE(remote->parts().get().clicks.reason, "");
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_NE(remote->parts().get().trust.part, nullptr);
    fake->vanish();
    ASSERT_TRUE(until([this] { return !isOffered(); }));
    EXPECT_NE(remote->parts().get().clicks.reason, "");
}

TEST_F(RemoteDesktopTest, VersionThatCannotBeReadIsNoOffer) {
    fake.emplace(bus.address());
    fake->version = 0;
    ASSERT_TRUE(until([this] { return fake->calls.contains("org.freedesktop.portal.RemoteDesktop"); }));
    settle();
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(remote->parts().get().clicks.reason,
              "Input cannot be posted: the desktop's portal offers no remote control.");
}

TEST_F(RemoteDesktopTest, SilentPortalIsNoOffer) {
    fake.emplace(bus.address(), SettingGroups(), FakePortal::Manner::staysSilent);
    ASSERT_TRUE(until([this] { return fake->calls.contains("org.freedesktop.portal.RemoteDesktop"); }));
    EXPECT_FALSE(isOffered());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
}

TEST_F(RemoteDesktopTest, GrantOfThePointerIsTrust) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(ask(PromptReason::automatic));
    EXPECT_EQ(devices.value("types"), 2U);
    EXPECT_EQ(devices.value("persist_mode"), 2U);
    EXPECT_FALSE(devices.contains("restore_token"));
    EXPECT_FALSE(remote->isTrusted());
    ASSERT_NO_FATAL_FAILURE(grant());
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(remote->requestPrompt(PromptReason::askedFor));
    expectRequests(3);
}

TEST_F(RemoteDesktopTest, GrantOfOtherDevicesIsNone) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(ask());
    fake->respond(0, {{"devices", 1U}});
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
}

TEST_F(RemoteDesktopTest, ClicksAreAPressAndARelease) {
    ASSERT_NO_FATAL_FAILURE(open());
    click();
    click(EventButton::right);
    click(EventButton::center);
    EXPECT_EQ(fake->buttons, (QStringList{"272 down", "272 up", "273 down", "273 up", "274 down", "274 up"}));
}

TEST_F(RemoteDesktopTest, ReleaseWaitsForTheAnswerToThePress) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_TRUE(clicks->waitsForDesktop());
    fake->buttonManner = FakePortal::Buttons::held;
    std::thread engine([this] { clickHere(); });
    EXPECT_TRUE(until([this] { return !fake->buttons.isEmpty(); }));
    settle();
    EXPECT_EQ(fake->buttons, QStringList{"272 down"});
    fake->letButtonsGo();
    EXPECT_TRUE(until([this] { return fake->buttons == oneClick; }));
    engine.join();
    EXPECT_TRUE(remote->isTrusted());
}

TEST_F(RemoteDesktopTest, ButtonThatIsNotTakenIsTheLossOfThePermission) {
    ASSERT_NO_FATAL_FAILURE(open());
    fake->buttonManner = FakePortal::Buttons::refused;
    click();
    EXPECT_TRUE(until([this] { return fake->buttons == oneClick; })) << "nothing stays down";
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_EQ(changes, 2);
    expectRequests(3);
}

TEST_F(RemoteDesktopTest, IsAskedForByItselfOnceAtMost) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(ask(PromptReason::automatic));
    fake->respond(1);
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::automatic));
    expectRequests(3);
    ASSERT_NO_FATAL_FAILURE(ask(PromptReason::askedFor));
    ASSERT_NO_FATAL_FAILURE(grant());
}

TEST_F(RemoteDesktopTest, QuestionDuringAnotherJoinsIt) {
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::automatic));
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    expectRequests(3);
    ASSERT_NO_FATAL_FAILURE(grant());
}

TEST_F(RemoteDesktopTest, FailureMayBeFollowedByAnotherQuestion) {
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
    fake->respond(2);
    settle();
    fake->request = {};
    ASSERT_NO_FATAL_FAILURE(ask());
    ASSERT_NO_FATAL_FAILURE(grant());
}

TEST_F(RemoteDesktopTest, TokenIsKeptForItsOwnerAndShownAtTheNextStart) {
    ASSERT_NO_FATAL_FAILURE(open("first"));
    restart();
    const QFile file(QString::fromStdString(tokenPath()));
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
    ASSERT_TRUE(until([this] { return isOffered(); }));
    ASSERT_NO_FATAL_FAILURE(ask(PromptReason::automatic));
    EXPECT_EQ(devices.value("restore_token"), "first");
    ASSERT_NO_FATAL_FAILURE(grant("second"));
    EXPECT_EQ(token->get(), "second");
}

TEST_F(RemoteDesktopTest, TokenThatMayHaveFailedIsNotShownAgain) {
    ASSERT_NO_FATAL_FAILURE(open("first"));
    restart();
    ASSERT_TRUE(until([this] { return isOffered(); }));
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_TRUE(devices.contains("restore_token"));
    fake->respond(2);
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_FALSE(devices.contains("restore_token"));
    EXPECT_EQ(token->get(), "first") << "it may still be good tomorrow";
}

TEST_F(RemoteDesktopTest, DesktopThatForgetsGetsNoToken) {
    token->set("of another desktop");
    ASSERT_NO_FATAL_FAILURE(bring(1));
    EXPECT_EQ(remote->parts().get().clicks.limit,
              "This desktop remembers no permission to click: it may ask at every start.");
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_EQ(devices.value("types"), 2U);
    EXPECT_FALSE(devices.contains("persist_mode"));
    EXPECT_FALSE(devices.contains("restore_token"));
    ASSERT_NO_FATAL_FAILURE(grant());
    EXPECT_EQ(token->get(), "of another desktop");
}

TEST_F(RemoteDesktopTest, SessionThatIsClosedIsLostWithoutAQuestion) {
    ASSERT_NO_FATAL_FAILURE(open());
    fake->closeSession(sessionPath);
    expectLost();
    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(remote->requestPrompt(PromptReason::automatic)) << "counts as asked before";
    ASSERT_NO_FATAL_FAILURE(ask());
}

TEST_F(RemoteDesktopTest, PortalThatGoesTakesThePermissionAlong) {
    ASSERT_NO_FATAL_FAILURE(open());
    fake->vanish();
    ASSERT_TRUE(until([this] { return !remote->isTrusted(); }));
    EXPECT_FALSE(isOffered());
    clickHere();
    ASSERT_NO_FATAL_FAILURE(bring());
    expectRequests(0);
    EXPECT_EQ(fake->buttons, QStringList());
    ASSERT_NO_FATAL_FAILURE(ask());
    ASSERT_NO_FATAL_FAILURE(grant());
    click();
    EXPECT_EQ(fake->buttons, oneClick);
}

TEST_F(RemoteDesktopTest, BackEndThatGoesTakesThePermissionAlong) {
    const auto backEnd = QStringLiteral("org.freedesktop.impl.portal.desktop.velloran");
    QDBusConnection other = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "back end");
    ASSERT_TRUE(other.registerService(backEnd));
    ASSERT_TRUE(other.registerService("org.freedesktop.impl.portal.desktop.files"));
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_TRUE(other.unregisterService("org.freedesktop.impl.portal.desktop.files"));
    settle();
    EXPECT_TRUE(remote->isTrusted()) << "another's";
    ASSERT_TRUE(other.unregisterService(backEnd));
    expectLost();
    EXPECT_TRUE(isOffered());
    ASSERT_TRUE(other.registerService(backEnd));
    expectRequests(3);
    QDBusConnection::disconnectFromBus("back end");
}

TEST_F(RemoteDesktopTest, LockedScreenEndsTheSession) {
    ASSERT_NO_FATAL_FAILURE(open());
    remote->setLocked(true);
    expectLost();
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    remote->setLocked(false);
    expectRequests(3);
    ASSERT_NO_FATAL_FAILURE(ask());
}

TEST_F(RemoteDesktopTest, UnlockedScreenHasWhatTheDesktopRemembersTried) {
    ASSERT_NO_FATAL_FAILURE(open("word"));
    remote->setLocked(true);
    fake->request = {};
    remote->setLocked(false);
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_EQ(devices.value("restore_token"), "word");
    ASSERT_NO_FATAL_FAILURE(grant("word"));
}

TEST_F(RemoteDesktopTest, SessionThatIsClosedJustBeforeTheLockCountsAsLocked) {
    ASSERT_NO_FATAL_FAILURE(open("word"));
    fake->closeSession(sessionPath);
    expectLost();
    remote->setLocked(true);
    fake->request = {};
    remote->setLocked(false);
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
}

TEST_F(RemoteDesktopTest, DialogAfterUnlockingIsWithdrawn) {
    ASSERT_NO_FATAL_FAILURE(open("word"));
    remote->setLocked(true);
    fake->request = {};
    remote->setLocked(false);
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_TRUE(until([this] { return fake->closed.contains(fake->request.path); }));
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
}

TEST_F(RemoteDesktopTest, DialogThatTheUserWantsStays) {
    ASSERT_NO_FATAL_FAILURE(open("word"));
    remote->setLocked(true);
    fake->request = {};
    remote->setLocked(false);
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    EXPECT_FALSE(QTest::qWaitFor([this] { return fake->closed.contains(sessionPath); }, 3500));
    ASSERT_NO_FATAL_FAILURE(grant());
}

TEST_F(RemoteDesktopTest, LockTakesTheDialogAway) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(ask());
    remote->setLocked(true);
    EXPECT_TRUE(until([this] { return fake->closed.contains(fake->request.path); }));
    remote->setLocked(false);
    expectRequests(3);
}

TEST_F(RemoteDesktopTest, EndOfTheProgramEndsTheSession) {
    ASSERT_NO_FATAL_FAILURE(open());
    remote.reset();
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    clickHere();
    settle();
    EXPECT_EQ(fake->buttons, QStringList());
}

} // namespace
} // namespace velloran::tests
