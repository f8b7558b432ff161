#include "platform/portal/PortalSession.h"

#include "platform/portal/PortalBench.h"

#include <QDBusObjectPath>
#include <QSignalSpy>

namespace velloran::tests {
namespace {

using namespace platform::portal;

class PortalSessionTest : public PortalBench {
protected:
    void SetUp() override { bringPortal(); }

    /// Asks for a session, and waits until the portal has been asked.
    void ask() {
        session_.emplace(portal, "org.freedesktop.portal.RemoteDesktop");
        QObject::connect(&*session_, &PortalSession::opened, &context, [this] { ++opened; });
        QObject::connect(&*session_, &PortalSession::ended, &context, [this] { ++ended; });
        ASSERT_TRUE(until([&] { return fake->requests == 1; }));
        path = QStringLiteral("/org/freedesktop/portal/desktop/session/%1/%2")
                   .arg(portal.clientName(), fake->request.options.value("session_handle_token").toString());
    }

    void open() {
        ask();
        fake->respond(0, {{"session_handle", path}});
        ASSERT_TRUE(until([&] { return session_->isOpen(); }));
    }

    std::optional<PortalSession> session_;
    QString path;
    int opened = 0;
    int ended = 0;
    QObject context;
};

TEST_F(PortalSessionTest, IsOpenOnceThePortalSaysSo) {
    ask();
    EXPECT_EQ(fake->request.method, "CreateSession");
    settle();
    EXPECT_FALSE(session_->isOpen());
    fake->respond(0, {{"session_handle", path}});
    ASSERT_TRUE(until([&] { return session_->isOpen(); }));
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(ended, 0);
}

TEST_F(PortalSessionTest, RequestsNameIt) {
    open();
    std::optional<PortalResponse> response;
    const auto request = session_->request("Start", {QString()}, {{"option", 7}},
                                           [&](const PortalResponse& answer) { response = answer; });
    ASSERT_TRUE(until([&] { return fake->requests == 2; }));
    EXPECT_EQ(fake->request.method, "Start");
    EXPECT_EQ(fake->request.arguments.value(0).value<QDBusObjectPath>().path(), path);
    EXPECT_EQ(fake->request.arguments.value(1), QString());
    EXPECT_EQ(fake->request.options.value("option"), 7);
    fake->respond(0, {{"devices", 2U}});
    ASSERT_TRUE(until([&] { return response.has_value(); }));
    EXPECT_EQ(response->results.value("devices"), 2U);
}

TEST_F(PortalSessionTest, EndsWhenThePortalClosesIt) {
    open();
    fake->closeSession(path);
    ASSERT_TRUE(until([&] { return ended == 1; }));
    EXPECT_FALSE(session_->isOpen());
    session_.reset();
    settle();
    EXPECT_EQ(fake->closed, QStringList());
}

TEST_F(PortalSessionTest, NobodyElseIsBelieved) {
    open();
    sendFromElsewhere(QDBusMessage::createTargetedSignal(session.connection().baseService(), path,
                                                         "org.freedesktop.portal.Session", "Closed"));
    EXPECT_TRUE(session_->isOpen());
    EXPECT_EQ(ended, 0);
}

TEST_F(PortalSessionTest, MayBeClosedBeforeItIsOpen) {
    ask();
    fake->closeSession(path);
    ASSERT_TRUE(until([&] { return ended == 1; }));
    fake->respond(0, {{"session_handle", path}});
    settle();
    EXPECT_FALSE(session_->isOpen());
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(ended, 1);
}

TEST_F(PortalSessionTest, EndsWhenItIsNotGranted) {
    ask();
    fake->respond(1);
    ASSERT_TRUE(until([&] { return ended == 1; }));
    EXPECT_EQ(opened, 0);
}

TEST_F(PortalSessionTest, EndsWithThePortal) {
    open();
    fake->vanish();
    ASSERT_TRUE(until([&] { return ended == 1; }));
    EXPECT_FALSE(session_->isOpen());
}

TEST_F(PortalSessionTest, DestroyingItClosesIt) {
    open();
    session_.reset();
    EXPECT_TRUE(until([&] { return fake->closed == QStringList{path}; }));
    EXPECT_EQ(ended, 0);
}

} // namespace
} // namespace velloran::tests
