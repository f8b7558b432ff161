#include "async/ConnectionLoss.h"
#include "async/SerialQueue.h"
#include "harness/observer/ClickReport.h"
#include "platform/x11/Desktop.h"
#include "platform/x11/X11PointerEvents.h"

#include <poll.h>

#include <chrono>
#include <future>

namespace velloran::tests {

using platform::EventButton;
using platform::MouseEventType;
using Kind = observer::InputEvent::Kind;

namespace {

constexpr std::chrono::milliseconds patience(10'000);

struct ButtonCase {
    EventButton button;
    MouseEventType down;
    MouseEventType up;
    /// The number that windows see.
    unsigned number;
};

constexpr ButtonCase left{EventButton::left, MouseEventType::leftMouseDown, MouseEventType::leftMouseUp, 1};
constexpr ButtonCase right{EventButton::right, MouseEventType::rightMouseDown, MouseEventType::rightMouseUp, 3};
constexpr ButtonCase middle{EventButton::center, MouseEventType::otherMouseDown, MouseEventType::otherMouseUp, 2};

/// One click as the engine makes it. False when a half cannot be made.
bool click(platform::PointerEvents& pointer, const ButtonCase& button) {
    const platform::Point position = pointer.location().value_or(platform::Point{});
    bool isWhole = true;
    for (const MouseEventType type : {button.down, button.up}) {
        const auto event = pointer.makeMouseEvent(type, position, button.button);
        isWhole = isWhole && event.has_value();
        if (event) {
            pointer.post(*event);
        }
    }
    pointer.flush();
    return isWhole;
}

} // namespace

class Clicks : public Desktop {
protected:
    void SetUp() override {
        Desktop::SetUp();
        if (!HasFatalFailure()) {
            openWindow();
        }
    }

    bool waitForReleases(std::size_t number) {
        return until([this, number] {
            return count(Kind::buttonRelease) >= number && count(Kind::buttonRelease, true) >= number;
        });
    }
};

/// Clicks on a connection of the test's own.
class FirstHandClicks : public Clicks {
protected:
    void SetUp() override {
        Clicks::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        platform::x11::XcbConnection connection(xcb_connect(server.displayName().c_str(), nullptr));
        descriptor_ = xcb_get_file_descriptor(connection.get());
        pointer = std::make_unique<platform::x11::X11PointerEvents>(std::move(connection), loss_);
    }

    /// Waits until the server has told that connection something that it has not taken in yet.
    [[nodiscard]] bool isTold() const {
        pollfd connection{descriptor_, POLLIN, 0};
        return poll(&connection, 1, static_cast<int>(patience.count())) > 0;
    }

    std::unique_ptr<platform::x11::X11PointerEvents> pointer;

private:
    ConnectionLoss loss_{loop, {}};
    int descriptor_ = -1;
};

TEST_F(Clicks, EachButtonIsOnePressAndOneReleaseAtThePointer) {
    for (const ButtonCase& button : {left, right, middle}) {
        events.clear();
        user->movePointer({300, 200});
        EXPECT_TRUE(click(x11->pointerEvents(), button));
        ASSERT_TRUE(waitForReleases(1));
        const auto seen = buttonEvents(false);
        ASSERT_EQ(seen.size(), 2U);
        EXPECT_EQ(seen[0].kind, Kind::buttonPress);
        EXPECT_EQ(seen[1].kind, Kind::buttonRelease);
        for (const auto& event : seen) {
            EXPECT_EQ(event.code, button.number);
            EXPECT_EQ(event.place, (observer::Place{300, 200}));
        }
    }
}

TEST_F(FirstHandClicks, FollowALeftHandedMouse) {
    ASSERT_TRUE(user->setButtonMapping({3, 2, 1}));
    ASSERT_TRUE(isTold());
    EXPECT_TRUE(click(*pointer, left));
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(buttonEvents(false).front().code, 1U) << "the left button to windows";
    EXPECT_EQ(buttonEvents(true).front().code, 3U) << "the third physical button";

    events.clear();
    ASSERT_TRUE(user->setButtonMapping({1, 2, 3}));
    ASSERT_TRUE(isTold());
    EXPECT_TRUE(click(*pointer, left));
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(buttonEvents(false).front().code, 1U);
    EXPECT_EQ(buttonEvents(true).front().code, 1U);
}

TEST_F(FirstHandClicks, AButtonThatNothingPlaysCannotBeMade) {
    ASSERT_TRUE(user->setButtonMapping({0, 2, 3}));
    ASSERT_TRUE(isTold());
    EXPECT_FALSE(click(*pointer, left));
    EXPECT_TRUE(click(*pointer, right));
    ASSERT_TRUE(waitForReleases(1));
    const auto seen = buttonEvents(true);
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].code, 3U);
}

TEST_F(FirstHandClicks, AChangeInTheMiddleOfAClickIsForTheNext) {
    const auto press = pointer->makeMouseEvent(left.down, {}, left.button);
    ASSERT_TRUE(press);
    pointer->post(*press);
    ASSERT_TRUE(user->setButtonMapping({3, 2, 1}));
    ASSERT_TRUE(isTold());
    const auto release = pointer->makeMouseEvent(left.up, {}, left.button);
    ASSERT_TRUE(release);
    pointer->post(*release);
    pointer->flush();
    EXPECT_TRUE(click(*pointer, left));
    ASSERT_TRUE(waitForReleases(2));
    const auto seen = buttonEvents(true);
    ASSERT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen[0].code, 1U);
    EXPECT_EQ(seen[1].code, 1U);
    EXPECT_EQ(seen[2].code, 3U);
    EXPECT_EQ(seen[3].code, 3U);
}

TEST_F(FirstHandClicks, ChangesOfTheKeyboardAreNoneOfTheirs) {
    ASSERT_EQ(runProgram({"xmodmap", "-display", server.displayName(), "-e", "add mod3 = Scroll_Lock"}), 0);
    ASSERT_TRUE(isTold());
    // Whoever asked for the button mapping now would wait for ever.
    server.pause();
    auto clicked = std::async(std::launch::async, [this] { return click(*pointer, left); });
    const bool isDone = clicked.wait_for(patience) == std::future_status::ready;
    server.goOn();
    EXPECT_TRUE(isDone);
    EXPECT_TRUE(clicked.get());
    EXPECT_TRUE(waitForReleases(1));
}

TEST_F(Clicks, DoNotWaitForTheServer) {
    constexpr std::size_t clicks = 50;
    platform::PointerEvents& pointer = x11->pointerEvents();
    server.pause();
    auto clicked = std::async(std::launch::async, [&pointer] {
        for (std::size_t i = 0; i < clicks; ++i) {
            click(pointer, left);
        }
    });
    const bool isDone = clicked.wait_for(patience) == std::future_status::ready;
    server.goOn();
    EXPECT_TRUE(isDone);
    clicked.get();
    ASSERT_TRUE(waitForReleases(clicks));
    EXPECT_EQ(buttonEvents(true).size(), 2 * clicks);
    EXPECT_TRUE(observer::summarize(buttonEvents(true), 0.0).areInPairs);
}

TEST_F(Clicks, AThousandFromAQueueAreAThousandPairsInOrderAndThePointerStays) {
    constexpr std::size_t clicks = 1000;
    const observer::Place before = other->pointer();
    platform::PointerEvents& pointer = x11->pointerEvents();
    const auto queue = loop.makeSerialQueue("clicks");
    for (std::size_t i = 0; i < clicks; ++i) {
        queue->async([&pointer, i] { click(pointer, i % 2 == 0 ? left : right); });
    }
    ASSERT_TRUE(waitForReleases(clicks));
    settle();
    for (const bool isRaw : {false, true}) {
        const auto seen = buttonEvents(isRaw);
        const observer::ClickReport report = observer::summarize(seen, 0.0);
        EXPECT_EQ(report.presses, clicks);
        EXPECT_EQ(report.releases, clicks);
        EXPECT_TRUE(report.areInPairs);
        EXPECT_EQ(report.places, std::vector<observer::Place>{before});
        for (std::size_t i = 0; i < seen.size(); ++i) {
            ASSERT_EQ(seen[i].code, i / 2 % 2 == 0 ? 1U : 3U) << "click " << i / 2;
        }
    }
    EXPECT_EQ(other->pointer(), before);
}

TEST_F(Clicks, NothingLeavesBeforeItIsFlushed) {
    platform::PointerEvents& pointer = x11->pointerEvents();
    const auto press = pointer.makeMouseEvent(left.down, {}, left.button);
    const auto release = pointer.makeMouseEvent(left.up, {}, left.button);
    ASSERT_TRUE(press && release);
    pointer.post(*press);
    settle();
    EXPECT_EQ(other->buttonsDown(), 0U);
    pointer.post(*release);
    settle();
    EXPECT_EQ(buttonEvents(true).size(), 0U);
    pointer.flush();
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(buttonEvents(true).size(), 2U);
}

TEST_F(Clicks, AHalfIsSentToo) {
    platform::PointerEvents& pointer = x11->pointerEvents();
    const auto press = pointer.makeMouseEvent(left.down, {}, left.button);
    const auto release = pointer.makeMouseEvent(left.up, {}, left.button);
    ASSERT_TRUE(press && release);
    pointer.post(*press);
    pointer.flush();
    ASSERT_TRUE(until([this] { return other->buttonsDown() == 1; }));
    pointer.post(*release);
    pointer.flush();
    EXPECT_TRUE(until([this] { return other->buttonsDown() == 0; }));
}

TEST_F(Clicks, ThePositionIsToldToTheMainThreadOnly) {
    user->movePointer({321, 123});
    EXPECT_EQ(x11->pointerPosition().currentPosition(), (platform::Point{321.0, 123.0}));
    EXPECT_EQ(x11->pointerEvents().location(), std::nullopt) << "no click waits for it";
    user->movePointer({0, 0});
    EXPECT_EQ(x11->pointerPosition().currentPosition(), (platform::Point{0.0, 0.0}));
}

TEST_F(Clicks, ThePositionIsInPoints) {
    const auto connected = platform::x11::X11Server::connect(loop, {}, server.displayName().c_str());
    ASSERT_TRUE(connected.ok());
    const auto position = connected.value()->pointerPosition([](platform::Point pixels) {
        return platform::Point{pixels.x / 2.0, pixels.y / 4.0};
    });
    user->movePointer({321, 123});
    EXPECT_EQ(position->currentPosition(), (platform::Point{160.5, 30.75}));
}

TEST_F(Clicks, AKilledClickerLeavesNoButtonDown) {
    constexpr int kills = 20;
    std::size_t clicksBefore = 0;
    for (int i = 0; i < kills; ++i) {
        ChildProcess clicker({CLICK_LOOP, server.displayName()});
        ASSERT_EQ(clicker.readLine(), "clicking");
        // A moment between any two of its steps: it makes thousands of clicks a second and nothing holds it back.
        ASSERT_TRUE(
            until([&] { return count(Kind::buttonPress, true) > clicksBefore + static_cast<std::size_t>(7 * i); }));
        clicker.sendSignal(SIGKILL);
        ASSERT_EQ(clicker.wait(), -SIGKILL);
        ASSERT_TRUE(until([this] {
            return other->buttonsDown() == 0 && count(Kind::buttonPress, true) == count(Kind::buttonRelease, true);
        })) << "after kill "
            << i;
        clicksBefore = count(Kind::buttonPress, true);
    }
    EXPECT_TRUE(observer::summarize(buttonEvents(true), 0.0).areInPairs);
}

} // namespace velloran::tests
