#include "platform/portal/InputBench.h"

#include <thread>

namespace velloran::tests {
namespace {

const QStringList pressAndRelease{"272 down", "272 up"};

/// What becomes of a session, and of the click that is under way when it ends.
class RemoteDesktopLossTest : public InputBench {
protected:
    ~RemoteDesktopLossTest() override {
        if (engine_.joinable()) {
            fake->letButtonsGo();
            EXPECT_TRUE(until([this] { return isClicked_; }));
            engine_.join();
        }
    }

    /// Has a press wait for its answer.
    void beginClick() {
        fake->buttonManner = FakePortal::Buttons::held;
        engine_ = std::thread([this] {
            clickHere();
            loop.postFromAnyThread([this] { isClicked_ = true; });
        });
        ASSERT_TRUE(until([this] { return !fake->buttons.isEmpty(); }));
    }

    /// Has the session whose path is `first` locked away under a click, and the next one granted, before that is
    /// answered.
    void openAnotherInTheMiddleOfAClick(QString& first) {
        ASSERT_NO_FATAL_FAILURE(open("word"));
        ASSERT_NO_FATAL_FAILURE(beginClick());
        first = sessionPath;
        remote->setLocked(true);
        fake->request = {};
        remote->setLocked(false);
        ASSERT_NO_FATAL_FAILURE(answerUpToStart());
        ASSERT_NO_FATAL_FAILURE(grant("word"));
    }

    /// And has it answered, after the session should have ended.
    void expectReleaseBeforeTheEnd() {
        settle();
        EXPECT_FALSE(fake->closed.contains(sessionPath));
        EXPECT_EQ(fake->buttons, QStringList{"272 down"});
        fake->letButtonsGo();
        EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
        EXPECT_EQ(fake->buttons, pressAndRelease);
        EXPECT_GT(fake->calls.lastIndexOf("Close"), fake->calls.lastIndexOf("NotifyPointerButton"));
    }

private:
    std::thread engine_;
    bool isClicked_ = false;
};

TEST_F(RemoteDesktopLossTest, LockInTheMiddleOfAClickWaitsForTheRelease) {
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_NO_FATAL_FAILURE(beginClick());
    remote->setLocked(true);
    EXPECT_FALSE(remote->isTrusted()) << "nobody waits for that";
    expectReleaseBeforeTheEnd();
}

TEST_F(RemoteDesktopLossTest, EndOfTheProgramInTheMiddleOfAClickWaitsForTheRelease) {
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_NO_FATAL_FAILURE(beginClick());
    remote.reset();
    expectReleaseBeforeTheEnd();
}

TEST_F(RemoteDesktopLossTest, SessionThatIsNotYetClosedLeavesTheNextAlone) {
    QString first;
    ASSERT_NO_FATAL_FAILURE(openAnotherInTheMiddleOfAClick(first));
    fake->letButtonsGo();
    EXPECT_TRUE(until([&] { return fake->closed.contains(first); }));
    EXPECT_EQ(fake->buttons, pressAndRelease);
    EXPECT_FALSE(fake->closed.contains(sessionPath));
    EXPECT_TRUE(remote->isTrusted());
}

TEST_F(RemoteDesktopLossTest, SessionThatThePortalClosesMeanwhileLeavesTheNextAlone) {
    QString first;
    ASSERT_NO_FATAL_FAILURE(openAnotherInTheMiddleOfAClick(first));
    fake->closeSession(first);
    settle();
    EXPECT_TRUE(remote->isTrusted());
}

TEST_F(RemoteDesktopLossTest, BackEndThatCameLaterGoesAlone) {
    const auto idle = QStringLiteral("org.freedesktop.impl.portal.desktop.idle");
    QDBusConnection other = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "back ends");
    ASSERT_TRUE(other.registerService(backEnds.first()));
    backEnds.append(idle);
    restart();
    ASSERT_NO_FATAL_FAILURE(open());
    ASSERT_TRUE(other.registerService(idle));
    ASSERT_TRUE(other.unregisterService(idle));
    settle();
    EXPECT_TRUE(remote->isTrusted()) << "the session is another's";
    ASSERT_TRUE(other.unregisterService(backEnds.first()));
    expectLost();
    // Where it opens the next one, it counts.
    ASSERT_TRUE(other.registerService(idle));
    fake->request = {};
    ASSERT_NO_FATAL_FAILURE(ask());
    ASSERT_NO_FATAL_FAILURE(grant());
    ASSERT_TRUE(other.unregisterService(idle));
    expectLost();
    QDBusConnection::disconnectFromBus("back ends");
}

} // namespace
} // namespace velloran::tests
