#include "platform/portal/RemoteDesktop.h"

#include "platform/portal/RealPortalBench.h"

#include <memory>
#include <optional>
#include <thread>

namespace velloran::tests {
namespace {

using namespace platform::portal;
using platform::MouseEventType;
using platform::PromptReason;

const auto applicationName = QStringLiteral("app.velloran.Velloran");

class RealPortalTest : public RealPortalBench {
protected:
    RealPortalTest() { restart(); }

    /// As another start of the program.
    void restart() {
        remote.reset();
        token.reset();
        connect();
        token.emplace(home.path("token"));
        remote.emplace(loop, *portal, *token, QStringList(FakeBackEnd::name));
        EXPECT_TRUE(until([this] { return isOffered(); })) << remote->parts().get().clicks.reason;
        clicks = remote->parts().get().clicks.part;
    }

    [[nodiscard]] bool isOffered() const { return remote->parts().get().clicks.part != nullptr; }

    void open() {
        EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
        ASSERT_TRUE(until([this] { return remote->isTrusted(); }));
    }

    /// Makes clicks as the engine does, one after the other on a thread of its own, until `isOver`, at most so many.
    template<typename Condition>
    void clickUntil(int most, Condition isOver) {
        std::atomic<bool> isDone = false;
        std::thread engine([&] {
            for (int made = 0; made < most && remoteClicks(); ++made) {
            }
            isDone = true;
        });
        EXPECT_TRUE(until([&] { return isDone || isOver(); }));
        EXPECT_TRUE(until([&] { return isDone.load(); }));
        engine.join();
    }

    /// One click; false when there was nothing to click with.
    bool remoteClicks() {
        bool isMade = false;
        for (const MouseEventType type : {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp}) {
            if (const auto event = clicks->makeMouseEvent(type, {}, platform::EventButton::left)) {
                clicks->post(*event);
                isMade = true;
            }
        }
        clicks->flush();
        return isMade;
    }

    /// How many whole clicks arrived, once that many should have: the portal answers before its back end has an event.
    /// No number when a press or a release is alone.
    [[nodiscard]] std::optional<int> clicksSeen(int expected) const {
        EXPECT_TRUE(until([&] { return backEnd->buttons.size() >= 2 * expected; }));
        for (int index = 0; index < backEnd->buttons.size(); ++index) {
            if (backEnd->buttons.at(index) != (index % 2 == 0 ? "272 down" : "272 up")) {
                return std::nullopt;
            }
        }
        return backEnd->buttons.size() % 2 == 0 ? std::optional(static_cast<int>(backEnd->buttons.size() / 2))
                                                : std::nullopt;
    }

    /// The portal remembers permissions.
    [[nodiscard]] bool remembers() const {
        return remote->parts().get().clicks.limit.find("remembers no") == std::string::npos;
    }

    std::optional<RestoreToken> token;
    std::optional<RemoteDesktop> remote;
    std::shared_ptr<platform::PointerEvents> clicks;
};

TEST_F(RealPortalTest, GrantedClicksArriveInPairs) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(backEnd->dialogs, 1);
    clickUntil(300, [] { return false; });
    EXPECT_EQ(clicksSeen(300), 300);
    EXPECT_TRUE(remote->isTrusted());
    remote.reset();
    EXPECT_TRUE(until([this] { return !backEnd->isOpen; }));
}

TEST_F(RealPortalTest, RefusedIsNotTrusted) {
    backEnd->manner = FakeBackEnd::Manner::refuses;
    EXPECT_FALSE(remote->requestPrompt(PromptReason::automatic));
    ASSERT_TRUE(until([this] { return backEnd->dialogs == 1 && !backEnd->isOpen; }));
    EXPECT_FALSE(remote->isTrusted());
    backEnd->manner = FakeBackEnd::Manner::grants;
    EXPECT_FALSE(remote->requestPrompt(PromptReason::automatic));
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(backEnd->dialogs, 2);
}

TEST_F(RealPortalTest, FailureIsNotTrusted) {
    backEnd->manner = FakeBackEnd::Manner::fails;
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_TRUE(until([this] { return backEnd->dialogs == 1 && !backEnd->isOpen; }));
    EXPECT_FALSE(remote->isTrusted());
    backEnd->manner = FakeBackEnd::Manner::grants;
    ASSERT_NO_FATAL_FAILURE(open());
}

TEST_F(RealPortalTest, SlowUserIsWaitedFor) {
    backEnd->manner = FakeBackEnd::Manner::isSlow;
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_TRUE(until([this] { return backEnd->dialogs == 1; }));
    // Longer than anything waits that needs no user to be shown a dialog.
    EXPECT_FALSE(QTest::qWaitFor([this] { return remote->isTrusted() || !backEnd->isOpen; }, 3500));
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor)) << "joins the question";
    backEnd->grantNow();
    ASSERT_TRUE(until([this] { return remote->isTrusted(); }));
    EXPECT_EQ(backEnd->dialogs, 1);
    clickUntil(10, [] { return false; });
    EXPECT_EQ(clicksSeen(10), 10);
}

TEST_F(RealPortalTest, QuestionWithoutAnAnswerIsWithdrawnWithTheProgram) {
    backEnd->manner = FakeBackEnd::Manner::hangs;
    EXPECT_FALSE(remote->requestPrompt(PromptReason::askedFor));
    ASSERT_TRUE(until([this] { return backEnd->dialogs == 1; }));
    EXPECT_FALSE(remote->isTrusted());
    remote.reset();
    EXPECT_TRUE(until([this] { return backEnd->withdrawn == 1; }));
    EXPECT_TRUE(until([this] { return !backEnd->isOpen; }));
}

TEST_F(RealPortalTest, TakenBackInMidRunNothingStaysPressed) {
    ASSERT_NO_FATAL_FAILURE(open());
    bool isClosed = false;
    int seen = 0;
    clickUntil(100'000, [&] {
        // Between two clicks, as this end sees it: one whose press has come already is the desktop's to end.
        if (backEnd->buttons.size() > 50 && backEnd->buttons.size() % 2 == 0 && !std::exchange(isClosed, true)) {
            seen = static_cast<int>(backEnd->buttons.size() / 2);
            backEnd->closeSession();
        }
        return !remote->isTrusted();
    });
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_EQ(clicksSeen(seen), seen) << "in pairs, and none after it was taken back";
    EXPECT_TRUE(isOffered());
    EXPECT_EQ(backEnd->dialogs, 1);
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(backEnd->buttons.size(), 2 * seen) << "none goes over to the next session";
}

TEST_F(RealPortalTest, LockInMidRunLeavesWholeClicks) {
    for (int round = 0; round < 5; ++round) {
        ASSERT_NO_FATAL_FAILURE(open());
        backEnd->buttons.clear();
        clickUntil(100'000, [&] {
            if (backEnd->buttons.size() > 20) {
                remote->setLocked(true);
            }
            return !remote->isTrusted();
        });
        ASSERT_TRUE(until([this] { return !backEnd->isOpen; }));
        EXPECT_TRUE(clicksSeen(10)) << "each release came before the end of the session";
        EXPECT_EQ(backEnd->ignored, QStringList());
        remote->setLocked(false);
    }
}

TEST_F(RealPortalTest, BackEndThatIsKilledInMidRunEndsIt) {
    ASSERT_NO_FATAL_FAILURE(open());
    clickUntil(100'000, [&] {
        if (backEnd && backEnd->buttons.size() > 50) {
            backEnd.reset();
        }
        return !remote->isTrusted();
    });
    EXPECT_FALSE(remote->isTrusted());
    backEnd.emplace(bus.address());
    ASSERT_NO_FATAL_FAILURE(open());
    clickUntil(10, [] { return false; });
    EXPECT_EQ(clicksSeen(10), 10);
}

TEST_F(RealPortalTest, PortalThatIsKilledInMidRunComesBack) {
    ASSERT_NO_FATAL_FAILURE(open());
    clickUntil(100'000, [&] {
        if (front && backEnd->buttons.size() > 50) {
            killPortal();
        }
        return !remote->isTrusted();
    });
    EXPECT_FALSE(remote->isTrusted());
    EXPECT_TRUE(until([this] { return !isOffered(); }));
    startPortal();
    ASSERT_TRUE(until([this] { return isOffered(); }));
    EXPECT_EQ(backEnd->dialogs, 1) << "nobody is asked by itself";
    backEnd->buttons.clear();
    ASSERT_NO_FATAL_FAILURE(open());
    clickUntil(10, [] { return false; });
    EXPECT_EQ(clicksSeen(10), 10);
}

TEST_F(RealPortalTest, PermissionIsRememberedWhereThePortalCan) {
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(!token->get().empty(), remembers());
    restart();
    ASSERT_NO_FATAL_FAILURE(open());
    EXPECT_EQ(backEnd->isRestored, remembers());
    EXPECT_EQ(backEnd->dialogs, remembers() ? 1 : 2);
}

TEST_F(RealPortalTest, IsKnownByNameWhereThePortalTakesNames) {
    ASSERT_NO_FATAL_FAILURE(open());
    const bool takesNames = portal->nameError().isEmpty();
    EXPECT_EQ(takesNames, remembers()) << "the releases that do one do the other: "
                                       << portal->nameError().toStdString();
    EXPECT_EQ(backEnd->programs.last(), takesNames ? applicationName : QString());
}

} // namespace
} // namespace velloran::tests
