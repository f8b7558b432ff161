#include "platform/portal/PortalPointerEvents.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <utility>
#include <vector>

namespace velloran::tests {
namespace {

using namespace platform;
using platform::portal::ClickSender;
using platform::portal::PortalPointerEvents;

constexpr MouseEvent press{MouseEventType::leftMouseDown, {}, EventButton::left};
constexpr MouseEvent release{MouseEventType::leftMouseUp, {}, EventButton::left};
const std::vector<MouseEvent> wholeClick{press, release};

/// Says what it is told to say, and keeps what it is given.
class ScriptedSender final : public ClickSender {
public:
    /// One answer after the other; the last one stays.
    explicit ScriptedSender(std::deque<bool> answers) : answers_(std::move(answers)) {}

    [[nodiscard]] bool canSend() const override {
        const bool answer = answers_.front();
        if (answers_.size() > 1) {
            answers_.pop_front();
        }
        return answer;
    }

    [[nodiscard]] bool waits() const override { return false; }

    [[nodiscard]] bool isKeeping() const override { return isHolding; }

    void send(const std::vector<MouseEvent>& events) override { sent.insert(sent.end(), events.begin(), events.end()); }

    void end(std::unique_ptr<platform::portal::PortalSession> /*session*/) override {}

    bool isHolding = false;

    std::vector<MouseEvent> sent;

private:
    mutable std::deque<bool> answers_;
};

class PortalPointerEventsTest : public testing::Test {
protected:
    std::shared_ptr<ScriptedSender> use(std::deque<bool> answers) {
        auto sender = std::make_shared<ScriptedSender>(std::move(answers));
        events.use(sender);
        return sender;
    }

    void postHalf(const MouseEvent& half) {
        if (const auto event = events.makeMouseEvent(half.type, half.position, half.button)) {
            events.post(*event);
        }
    }

    void click() {
        postHalf(press);
        postHalf(release);
        events.flush();
    }

    PortalPointerEvents events;
};

TEST_F(PortalPointerEventsTest, ClickIsSentWhole) {
    const auto sender = use({true});
    click();
    EXPECT_EQ(sender->sent, wholeClick);
}

TEST_F(PortalPointerEventsTest, WithoutASenderThereIsNoClick) {
    EXPECT_FALSE(events.canPost());
    click();
    const auto sender = use({true});
    events.flush();
    EXPECT_TRUE(sender->sent.empty());
}

TEST_F(PortalPointerEventsTest, SenderThatRestsBetweenTheHalvesGetsBothOfThem) {
    const auto sender = use({true, false, true});
    click();
    EXPECT_EQ(sender->sent, wholeClick);
}

TEST_F(PortalPointerEventsTest, SenderThatComesToLifeBetweenTheHalvesGetsNeither) {
    const auto sender = use({false, true});
    click();
    EXPECT_TRUE(sender->sent.empty());
    click();
    EXPECT_EQ(sender->sent, wholeClick);
}

TEST_F(PortalPointerEventsTest, SessionThatEndsBetweenTheHalvesAndIsFollowedByAnotherLeavesNoHalf) {
    const auto first = use({true});
    postHalf(press);
    events.use(nullptr);
    postHalf(release);
    const auto second = use({true});
    events.flush();
    EXPECT_TRUE(first->sent.empty());
    EXPECT_EQ(second->sent, wholeClick);
}

TEST_F(PortalPointerEventsTest, HalfAClickIsDropped) {
    const auto sender = use({true});
    postHalf(press);
    events.flush();
    postHalf(release);
    events.flush();
    EXPECT_TRUE(sender->sent.empty());
    click();
    EXPECT_EQ(sender->sent, wholeClick);
}

TEST_F(PortalPointerEventsTest, TellsThatTheDesktopTakesNothingIn) {
    EXPECT_FALSE(events.isKeeping());
    const auto sender = use({true});
    EXPECT_FALSE(events.isKeeping());
    sender->isHolding = true;
    EXPECT_TRUE(events.isKeeping());
    events.use(nullptr);
    EXPECT_FALSE(events.isKeeping());
}

} // namespace
} // namespace velloran::tests
