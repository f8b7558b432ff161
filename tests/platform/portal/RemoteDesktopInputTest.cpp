#include "platform/portal/RemoteDesktop.h"

#include "harness/EiServer.h"
#include "platform/portal/InputBench.h"

#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {
namespace {

using platform::PromptReason;

using Log = std::vector<std::string>;

/// A portal that hands over a connection for emulated input.
class RemoteDesktopInputTest : public InputBench {
protected:
    void bringWithInput() {
        ASSERT_NO_FATAL_FAILURE(bring());
        fake->makeInput = [this] { return server.makeClient(); };
    }

    void grantInput() {
        fake->respond(0, {{"devices", 2U}});
        ASSERT_TRUE(untilSeen([this] { return remote->isTrusted(); }));
    }

    void openInput() {
        ASSERT_NO_FATAL_FAILURE(bringWithInput());
        ASSERT_NO_FATAL_FAILURE(ask());
        ASSERT_NO_FATAL_FAILURE(grantInput());
    }

    template<typename Condition>
    bool untilSeen(Condition condition) {
        return until([&] {
            server.look();
            return condition();
        });
    }

    EiServer server;
};

TEST_F(RemoteDesktopInputTest, ClicksGoOverItAndByNoCalls) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(clicks->waitsForDesktop());
    clickHere();
    EXPECT_TRUE(untilSeen([this] { return server.log.size() >= 4; }));
    EXPECT_EQ(server.log, (Log{"272 down", "frame", "272 up", "frame"}));
    EXPECT_EQ(fake->buttons, QStringList());
}

TEST_F(RemoteDesktopInputTest, DesktopThatStandsStillIsClickedInOnce) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    ASSERT_TRUE(untilSeen([this] { return !clicks->isKeeping(); }));
    // As a run goes on, until it is stopped.
    for (int tried = 0; tried < 1000; ++tried) {
        if (!clicks->isKeeping()) {
            clickHere();
        }
    }
    EXPECT_TRUE(untilSeen([this] { return !clicks->isKeeping(); }));
    EXPECT_EQ(server.log, (Log{"272 down", "frame", "272 up", "frame"}));
    EXPECT_TRUE(remote->isTrusted());
}

TEST_F(RemoteDesktopInputTest, ItsEndIsTheLossOfThePermission) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    server.disconnect();
    expectLost();
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    expectRequests(3);
}

TEST_F(RemoteDesktopInputTest, TrustGoesWithTheDeviceAndComesWithTheNext) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    server.removeDevice();
    ASSERT_TRUE(until([this] { return !remote->isTrusted(); }));
    EXPECT_EQ(changes, 2);
    server.addDevice();
    ASSERT_TRUE(untilSeen([this] { return remote->isTrusted(); }));
    EXPECT_EQ(changes, 3);
}

TEST_F(RemoteDesktopInputTest, UserWhoWantsToClickMeanwhileIsAskedAnew) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    server.removeDevice();
    ASSERT_TRUE(until([this] { return !remote->isTrusted(); }));
    fake->request = {};
    ASSERT_NO_FATAL_FAILURE(ask());
}

TEST_F(RemoteDesktopInputTest, ConnectionThatComesToNothingIsFollowedByCalls) {
    ASSERT_NO_FATAL_FAILURE(bringWithInput());
    ASSERT_NO_FATAL_FAILURE(ask());
    fake->respond(0, {{"devices", 2U}});
    ASSERT_TRUE(untilSeen([this] { return fake->calls.contains("ConnectToEIS") && server.hasClient(); }));
    server.disconnect();
    ASSERT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
    fake->request = {};
    ASSERT_NO_FATAL_FAILURE(ask());
    ASSERT_NO_FATAL_FAILURE(grant());
    EXPECT_TRUE(clicks->waitsForDesktop());
    click();
    EXPECT_EQ(fake->buttons, (QStringList{"272 down", "272 up"}));
}

TEST_F(RemoteDesktopInputTest, WhatWasGrantedIsTriedByCallsWithoutAnotherDialog) {
    ASSERT_NO_FATAL_FAILURE(bringWithInput());
    ASSERT_NO_FATAL_FAILURE(ask());
    fake->respond(0, {{"devices", 2U}, {"restore_token", "word"}});
    ASSERT_TRUE(untilSeen([this] { return fake->calls.contains("ConnectToEIS") && server.hasClient(); }));
    const QString first = sessionPath;
    fake->request = {};
    server.disconnect();
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_TRUE(fake->closed.contains(first));
    EXPECT_EQ(devices.value("restore_token"), "word");
    ASSERT_NO_FATAL_FAILURE(grant("next"));
    EXPECT_TRUE(clicks->waitsForDesktop());
    click();
    EXPECT_EQ(fake->buttons, (QStringList{"272 down", "272 up"}));
    EXPECT_EQ(fake->calls.count("ConnectToEIS"), 1);
    fake->closeSession(sessionPath);
    expectLost();
    expectRequests(6);
}

TEST_F(RemoteDesktopInputTest, SilenceAboutItIsFollowedByCallsAsWell) {
    ASSERT_NO_FATAL_FAILURE(bring());
    fake->inputError = QDBusError::NoReply;
    ASSERT_NO_FATAL_FAILURE(ask());
    const FakePortal::Request granted = std::exchange(fake->request, {});
    fake->request.path = granted.path;
    fake->respond(0, {{"devices", 2U}, {"restore_token", "word"}});
    ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    EXPECT_EQ(devices.value("restore_token"), "word");
    ASSERT_NO_FATAL_FAILURE(grant("next"));
    EXPECT_TRUE(clicks->waitsForDesktop());
}

TEST_F(RemoteDesktopInputTest, PortalThatDoesNotSayWhetherItHasItIsLost) {
    for (const auto silence : {QDBusError::NoReply, QDBusError::Timeout, QDBusError::TimedOut}) {
        ASSERT_NO_FATAL_FAILURE(bring());
        fake->inputError = silence;
        ASSERT_NO_FATAL_FAILURE(ask());
        fake->respond(0, {{"devices", 2U}});
        EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
        EXPECT_FALSE(remote->isTrusted());
        fake.reset();
        ASSERT_TRUE(until([this] { return !isOffered(); }));
    }
}

TEST_F(RemoteDesktopInputTest, LockedScreenEndsIt) {
    ASSERT_NO_FATAL_FAILURE(openInput());
    remote->setLocked(true);
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_TRUE(untilSeen([this] { return server.isClientGone; }));
}

} // namespace
} // namespace velloran::tests
