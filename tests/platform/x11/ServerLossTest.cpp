#include "async/ConnectionLoss.h"

#include "async/SerialQueue.h"
#include "platform/x11/Desktop.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11PointerEvents.h"

#include <atomic>
#include <csignal>
#include <memory>
#include <thread>

namespace velloran::tests {

using namespace platform;

class ServerLossTest : public Desktop {
protected:
    static void click(PointerEvents& pointer) {
        const Point position = pointer.location().value_or(Point{});
        for (const MouseEventType type : {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp}) {
            if (const auto event = pointer.makeMouseEvent(type, position, EventButton::left)) {
                pointer.post(*event);
            }
        }
        pointer.flush();
    }

    [[nodiscard]] std::pair<Subscription, Status> registered(std::uint32_t keyCode) {
        const auto status = std::make_shared<Status>(1);
        Subscription hotKey = x11->hotKeys().registerHotKey(
            keyCode, controlModifier, {}, [status](const HotKeyAnswer& answer) { *status = answer.status; });
        return {std::move(hotKey), *status};
    }

    /// Everything that the platform offers, on a server that is gone.
    void useEverything() {
        EXPECT_FALSE(x11->inputTrust().isTrusted());
        EXPECT_FALSE(x11->inputTrust().requestPrompt(PromptReason::askedFor));
        EXPECT_EQ(x11->pointerPosition().currentPosition(), std::nullopt);
        EXPECT_EQ(x11->pointerEvents().location(), std::nullopt);
        EXPECT_EQ(x11->pointerEvents().makeMouseEvent(MouseEventType::leftMouseDown, {}, EventButton::left),
                  std::nullopt);
        x11->pointerEvents().post({MouseEventType::leftMouseDown, {}, EventButton::left});
        x11->pointerEvents().flush();
        EXPECT_EQ(registered(101).second, hotKeyInvalidError);
        EXPECT_FALSE(x11->keyboard().layout().ok());
        EXPECT_EQ(x11->keyboard().state().group, 0U);
    }

    /// Lets the loop go round until nothing is left to be told.
    void idle() {
        int turnsTaken = 0;
        const std::function<void()> turn = [&] {
            if (++turnsTaken < 10) {
                loop.post(turn);
            }
        };
        loop.post(turn);
        EXPECT_TRUE(until([&turnsTaken] { return turnsTaken == 10; }));
    }
};

TEST_F(ServerLossTest, AServerThatAnswersIsTrusted) {
    EXPECT_TRUE(x11->inputTrust().isTrusted());
    EXPECT_TRUE(x11->inputTrust().requestPrompt(PromptReason::askedFor));
    x11->inputTrust().onChanged({});
    settle();
    EXPECT_EQ(losses, 0);
}

TEST_F(ServerLossTest, AnIdleProgramIsToldOnce) {
    auto [hotKey, status] = registered(100);
    ASSERT_EQ(status, noErr);
    server.crash();
    EXPECT_EQ(losses, 0) << "told in a turn of the loop only";
    ASSERT_TRUE(until([this] { return losses > 0; }));
    useEverything();
    hotKey.cancel();
    idle();
    EXPECT_EQ(losses, 1);
    x11.reset();
    idle();
    EXPECT_EQ(losses, 1);
}

TEST_F(ServerLossTest, WhoeverAsksFirstNotices) {
    server.crash();
    EXPECT_EQ(x11->pointerPosition().currentPosition(), std::nullopt);
    useEverything();
    EXPECT_EQ(losses, 0) << "told in a turn of the loop only";
    ASSERT_TRUE(until([this] { return losses > 0; }));
    idle();
    EXPECT_EQ(losses, 1);
}

TEST_F(ServerLossTest, ClickingGoesOnHarmlesslyOnItsThread) {
    std::atomic<int> clicks = 0;
    std::atomic<bool> isEnding = false;
    PointerEvents& pointer = x11->pointerEvents();
    auto queue = loop.makeSerialQueue("clicks");
    queue->async([&] {
        while (!isEnding) {
            click(pointer);
            ++clicks;
        }
    });
    ASSERT_TRUE(until([&] { return count(observer::InputEvent::Kind::buttonRelease, true) > 20; }));
    server.crash();
    ASSERT_TRUE(until([this] { return losses > 0; }));
    const int clicksAtLoss = clicks;
    // Its clicks lead nowhere now, but the thread is neither stuck nor dead.
    while (clicks < clicksAtLoss + 10) {
        std::this_thread::yield();
    }
    isEnding = true;
    queue.reset();
    idle();
    EXPECT_EQ(losses, 1);
}

TEST_F(ServerLossTest, TheClicksNoticeByThemselves) {
    int told = 0;
    ConnectionLoss loss(loop, [&told] { ++told; });
    x11::X11PointerEvents pointer(x11::XcbConnection(xcb_connect(server.displayName().c_str(), nullptr)), loss);
    ASSERT_TRUE(pointer.canPost());
    click(pointer);
    EXPECT_FALSE(loss.isLost());
    server.crash();
    click(pointer);
    EXPECT_TRUE(loss.isLost());
    EXPECT_EQ(told, 0) << "told in a turn of the loop only";
    ASSERT_TRUE(until([&told] { return told > 0; }));
    click(pointer);
    idle();
    EXPECT_EQ(told, 1);
}

TEST_F(ServerLossTest, TheLoopComesToRest) {
    server.crash();
    ASSERT_TRUE(until([this] { return losses > 0; }));
    stopWatchingOther();
    idle();
    const int turnsBefore = turns;
    during(0.2);
    EXPECT_LT(turns - turnsBefore, 10) << "a broken connection can be read for ever";
}

TEST_F(ServerLossTest, ABrokenPipeDoesNotEndTheProgram) {
    std::signal(SIGPIPE, SIG_DFL);
    {
        const auto connected = x11::X11Server::connect(loop, {}, server.displayName().c_str());
        ASSERT_TRUE(connected.ok());
    }
    EXPECT_EQ(std::raise(SIGPIPE), 0);

    static volatile std::sig_atomic_t received = 0;
    std::signal(SIGPIPE, [](int) { received = 1; });
    {
        const auto connected = x11::X11Server::connect(loop, {}, server.displayName().c_str());
        ASSERT_TRUE(connected.ok());
    }
    EXPECT_EQ(std::raise(SIGPIPE), 0);
    EXPECT_EQ(received, 1) << "whoever handles it goes on doing so";
}

TEST_F(ServerLossTest, TheReceiverMayEndThePlatform) {
    int told = 0;
    std::unique_ptr<X11Parts> second;
    auto connected = x11::X11Server::connect(
        loop,
        [&] {
            ++told;
            second.reset();
        },
        server.displayName().c_str());
    ASSERT_TRUE(connected.ok());
    second = std::make_unique<X11Parts>(std::move(connected).value());
    server.crash();
    ASSERT_TRUE(until([&told] { return told > 0; }));
    EXPECT_EQ(second, nullptr);
    idle();
    EXPECT_EQ(told, 1);
}

TEST_F(ServerLossTest, NoServerIsAnErrorInWords) {
    const auto connected = x11::X11Server::connect(loop, {}, "unix:/no/such/server");
    ASSERT_FALSE(connected.ok());
    EXPECT_EQ(connected.error().message, "No X server answers at unix:/no/such/server");
}

} // namespace velloran::tests
