#include "platform/portal/PortalRequest.h"

#include "platform/portal/PortalBench.h"

#include <utility>

namespace velloran::tests {
namespace {

using namespace platform::portal;
using namespace std::chrono_literals;
using Outcome = PortalResponse::Outcome;

class PortalRequestTest : public PortalBench {
protected:
    /// Makes a request, and waits until the portal has it.
    void ask(PortalCall call = {"org.freedesktop.portal.Some", "Thing", {"first"}}) {
        const int before = fake->requests;
        request.emplace(portal, std::move(call), QVariantMap{{"option", 7}}, [this](const PortalResponse& answer) {
            ++answers;
            response = answer;
        });
        EXPECT_FALSE(response.has_value());
        ASSERT_TRUE(until([&] { return fake->requests > before; }));
    }

    /// How the request ends.
    Outcome outcome() {
        EXPECT_TRUE(until([&] { return response.has_value(); }));
        settle();
        EXPECT_EQ(answers, 1);
        return response->outcome;
    }

    std::optional<PortalRequest> request;
    std::optional<PortalResponse> response;
    int answers = 0;
};

TEST_F(PortalRequestTest, IsGranted) {
    bringPortal();
    ask();
    EXPECT_EQ(fake->request.method, "Thing");
    EXPECT_EQ(fake->request.arguments, QVariantList{"first"});
    EXPECT_EQ(fake->request.options.value("option"), 7);
    fake->respond(0, {{"what", "all of it"}});
    EXPECT_EQ(outcome(), Outcome::granted);
    EXPECT_EQ(response->results.value("what"), "all of it");
    request.reset();
    settle();
    EXPECT_EQ(fake->closed, QStringList());
}

TEST_F(PortalRequestTest, IsRefusedOrFails) {
    bringPortal();
    ask();
    fake->respond(1);
    EXPECT_EQ(outcome(), Outcome::refused);
    response.reset();
    answers = 0;
    ask();
    fake->respond(2, {{"what", "all the same"}});
    EXPECT_EQ(outcome(), Outcome::failed);
    EXPECT_EQ(response->results.value("what"), "all the same");
}

TEST_F(PortalRequestTest, TheAnswerMayComeBeforeTheCallIsThrough) {
    bringPortal({}, FakePortal::Manner::hurries);
    ask();
    EXPECT_EQ(outcome(), Outcome::granted);
}

TEST_F(PortalRequestTest, AnotherPathIsFollowed) {
    bringPortal();
    fake->usesOwnPaths = true;
    ask();
    settle();
    fake->respond(0);
    EXPECT_EQ(outcome(), Outcome::granted);
}

TEST_F(PortalRequestTest, WithoutAPathTheAnswerToAnotherRequestIsNotItsOwn) {
    bringPortal();
    fake->namesNoPath = true;
    ask();
    settle();
    const QString path = std::exchange(fake->request.path, fake->request.path + "0");
    fake->respond(0);
    settle();
    EXPECT_FALSE(response.has_value());
    fake->request.path = path;
    fake->respond(1);
    EXPECT_EQ(outcome(), Outcome::refused);
}

TEST_F(PortalRequestTest, NobodyElseIsBelieved) {
    bringPortal();
    ask();
    QDBusMessage lie = QDBusMessage::createTargetedSignal(session.connection().baseService(), fake->request.path,
                                                          "org.freedesktop.portal.Request", "Response");
    lie << 0U << QVariantMap{{"what", "a lie"}};
    sendFromElsewhere(lie);
    EXPECT_FALSE(response.has_value());
    fake->respond(1);
    EXPECT_EQ(outcome(), Outcome::refused);
}

TEST_F(PortalRequestTest, DestroyingItWithdrawsIt) {
    bringPortal();
    ask();
    const QString path = fake->request.path;
    request.reset();
    ASSERT_TRUE(until([&] { return fake->closed == QStringList{path}; }));
    fake->respond(0);
    settle();
    EXPECT_FALSE(response.has_value());
}

TEST_F(PortalRequestTest, IsUnavailableWhereItIsAnsweredWithAnError) {
    bringPortal({}, FakePortal::Manner::refuses);
    ask();
    EXPECT_EQ(outcome(), Outcome::unavailable);
}

TEST_F(PortalRequestTest, IsNotWaitedForWhenThePortalHangs) {
    bringPortal({}, FakePortal::Manner::hangs);
    PortalCall call{"org.freedesktop.portal.Some", "Thing"};
    call.longestWait = 50ms;
    ask(call);
    ASSERT_TRUE(until([&] { return response.has_value(); }));
    EXPECT_EQ(response->outcome, Outcome::unavailable);
    EXPECT_TRUE(until([&] { return fake->closed == QStringList{fake->request.path}; }));
}

TEST_F(PortalRequestTest, IsUnavailableWithoutAPortal) {
    request.emplace(portal, PortalCall{"org.freedesktop.portal.Some", "Thing"}, QVariantMap(),
                    [this](const PortalResponse& answer) { response = answer; });
    EXPECT_FALSE(response.has_value());
    ASSERT_TRUE(until([&] { return response.has_value(); }));
    EXPECT_EQ(response->outcome, Outcome::unavailable);
}

TEST_F(PortalRequestTest, IsLostWithThePortal) {
    bringPortal();
    ask();
    fake.reset();
    ASSERT_TRUE(until([&] { return response.has_value(); }));
    EXPECT_EQ(response->outcome, Outcome::lost);
}

TEST_F(PortalRequestTest, IsLostWithTheBus) {
    bringPortal();
    ask();
    bus.end();
    ASSERT_TRUE(until([&] { return response.has_value(); }));
    EXPECT_EQ(response->outcome, Outcome::lost);
}

TEST_F(PortalRequestTest, WhoIsToldMayDestroyIt) {
    bringPortal();
    bool isTold = false;
    request.emplace(portal, PortalCall{"org.freedesktop.portal.Some", "Thing"}, QVariantMap(),
                    [&](const PortalResponse&) {
                        request.reset();
                        isTold = true;
                    });
    ASSERT_TRUE(until([&] { return fake->requests == 1; }));
    fake->respond(0);
    EXPECT_TRUE(until([&] { return isTold; }));
    settle();
    EXPECT_EQ(fake->closed, QStringList());
}

} // namespace
} // namespace velloran::tests
