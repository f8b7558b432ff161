#include "platform/portal/InputBench.h"

namespace velloran::tests {
namespace {

/// What becomes of the word by which the desktop knows a permission again.
class RemoteDesktopTokenTest : public InputBench {
protected:
    /// A start of the program that has a token, up to where it is shown and answered with the error.
    void showInVain(QDBusError::ErrorType error) {
        token->set("word");
        ASSERT_NO_FATAL_FAILURE(bring());
        EXPECT_FALSE(remote->requestPrompt(platform::PromptReason::askedFor));
        ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
        fake->requestError = error;
        fake->respond(0);
        ASSERT_NO_FATAL_FAILURE(expectRequest("SelectDevices"));
        EXPECT_EQ(fake->request.options.value("restore_token"), "word");
        ASSERT_TRUE(until([this] { return fake->calls.contains("Close"); }));
        settle();
        fake->requestError.reset();
        fake->request = {};
    }
};

TEST_F(RemoteDesktopTokenTest, PortalThatOnlyStandsStillIsShownItAgain) {
    for (const auto silence : {QDBusError::NoReply, QDBusError::Timeout, QDBusError::TimedOut}) {
        ASSERT_NO_FATAL_FAILURE(showInVain(silence));
        ASSERT_NO_FATAL_FAILURE(ask());
        EXPECT_EQ(devices.value("restore_token"), "word");
        fake.reset();
        ASSERT_TRUE(until([this] { return !isOffered(); }));
    }
}

TEST_F(RemoteDesktopTokenTest, PortalThatDoesNotTakeItIsNotShownItAgain) {
    ASSERT_NO_FATAL_FAILURE(showInVain(QDBusError::InvalidArgs));
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_FALSE(devices.contains("restore_token"));
    ASSERT_NO_FATAL_FAILURE(grant());
}

TEST_F(RemoteDesktopTokenTest, GrantWithoutThePointerReplacesItAndIsNotTriedAgain) {
    token->set("used up");
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_EQ(devices.value("restore_token"), "used up");
    fake->respond(0, {{"devices", 1U}, {"restore_token", "next"}});
    EXPECT_TRUE(until([this] { return fake->closed.contains(sessionPath); }));
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_EQ(token->get(), "next");
    fake->request = {};
    ASSERT_NO_FATAL_FAILURE(ask());
    EXPECT_FALSE(devices.contains("restore_token")) << "it would bring the same, and no dialog";
    ASSERT_NO_FATAL_FAILURE(grant("with a pointer"));
    EXPECT_EQ(token->get(), "with a pointer");
}

} // namespace
} // namespace velloran::tests
