#include "platform/wayland/VirtualPointerTest.h"

#include "async/SerialQueue.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <future>

namespace {

/// How often this thread has written to a socket.
thread_local int writes = 0;

} // namespace

/// Stands in front of the system's own, for the libraries of this program as well.
extern "C" ssize_t sendmsg(int descriptor, const msghdr* message, int flags) {
    ++writes;
    return syscall(SYS_sendmsg, descriptor, message, flags);
}

namespace velloran::tests {

TEST_F(VirtualPointerTest, EachButtonIsAPressAndAReleaseInFramesOfTheirOwn) {
    connectToUsualCompositor();
    for (const ButtonCase& button : {left, right, middle}) {
        compositor->deeds.clear();
        EXPECT_TRUE(click(pointer->pointerEvents(), button));
        ASSERT_TRUE(untilDeeds(4));
        EXPECT_EQ(compositor->deeds, clickDeeds(button));
    }
    EXPECT_EQ(pointer->pointerEvents().location(), std::nullopt);
}

TEST_F(VirtualPointerTest, TellsOnceThatTheCompositorMakesNoPointersAndMayEndThen) {
    compositor->addSeat("seat0", true);
    connect();
    int tellings = 0;
    pointer->onMissing([&] {
        ++tellings;
        pointer.reset();
    });
    EXPECT_TRUE(until([&] { return tellings == 1; }));
    idle();
    EXPECT_EQ(tellings, 1);
}

TEST_F(VirtualPointerTest, NothingIsMissingWhereThereIsNoSeatYet) {
    compositor->offerPointers();
    connect();
    int tellings = 0;
    pointer->onMissing([&] { ++tellings; });
    EXPECT_TRUE(untilMissing());
    compositor->addSeat("seat0", true);
    EXPECT_TRUE(untilOffered());
    idle();
    EXPECT_EQ(tellings, 0);
}

TEST_F(VirtualPointerTest, NothingLeavesBeforeItIsFlushed) {
    connectToUsualCompositor();
    platform::PointerEvents& events = pointer->pointerEvents();
    compositor->pause();
    const auto press = events.makeMouseEvent(left.down, {}, left.button);
    const auto release = events.makeMouseEvent(left.up, {}, left.button);
    ASSERT_TRUE(press && release);
    events.post(*press);
    events.post(*release);
    EXPECT_EQ(compositor->bytesWaiting(), 0U);
    events.flush();
    EXPECT_GT(compositor->bytesWaiting(), 0U);
    compositor->goOn();
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_EQ(compositor->deeds, clickDeeds(left));
    events.flush();
    idle();
    EXPECT_EQ(compositor->deeds.size(), 4U);
}

TEST_F(VirtualPointerTest, AClickIsOneWrite) {
    connectToUsualCompositor();
    compositor->pause();
    for (int i = 1; i <= 40; ++i) {
        const int writesBefore = writes;
        click(pointer->pointerEvents());
        ASSERT_EQ(writes - writesBefore, 1) << "click " << i;
    }
}

TEST_F(VirtualPointerTest, AHalfIsSentToo) {
    connectToUsualCompositor();
    platform::PointerEvents& events = pointer->pointerEvents();
    const auto press = events.makeMouseEvent(left.down, {}, left.button);
    ASSERT_TRUE(press);
    events.post(*press);
    events.flush();
    ASSERT_TRUE(untilDeeds(2));
    EXPECT_TRUE(compositor->deeds.front().isPressed);
}

TEST_F(VirtualPointerTest, AClickThatHasBegunEndsOrDoesNotHappen) {
    connectToUsualCompositor();
    platform::PointerEvents& events = pointer->pointerEvents();
    const auto press = events.makeMouseEvent(left.down, {}, left.button);
    ASSERT_TRUE(press);
    events.post(*press);
    compositor->withdrawPointers();
    ASSERT_TRUE(untilMissing());
    const auto release = events.makeMouseEvent(left.up, {}, left.button);
    ASSERT_TRUE(release);
    events.post(*release);
    compositor->offerPointers();
    ASSERT_TRUE(untilOffered());
    events.flush();
    ASSERT_TRUE(untilDeeds(4));
    EXPECT_TRUE(areClicks(1));

    EXPECT_TRUE(events.makeMouseEvent(left.down, {}, left.button));
    events.post(*press);
    events.post(*release);
    compositor->withdrawPointers();
    ASSERT_TRUE(untilMissing());
    events.flush();
    EXPECT_FALSE(events.makeMouseEvent(left.down, {}, left.button));
    idle();
    EXPECT_TRUE(areClicks(1));
}

TEST_F(VirtualPointerTest, AClickWhosePressIsRefusedHasNoReleaseEither) {
    connectToUsualCompositor();
    platform::PointerEvents& events = pointer->pointerEvents();
    compositor->withdrawPointers();
    ASSERT_TRUE(untilMissing());
    EXPECT_FALSE(events.makeMouseEvent(left.down, {}, left.button));
    compositor->offerPointers();
    ASSERT_TRUE(untilOffered());
    EXPECT_FALSE(events.makeMouseEvent(left.up, {}, left.button));
    EXPECT_TRUE(events.makeMouseEvent(left.down, {}, left.button));
}

TEST_F(VirtualPointerTest, AThousandFromAQueueAreAThousandInOrder) {
    connectToUsualCompositor();
    const auto queue = loop.makeSerialQueue("clicks");
    for (int i = 0; i < 1000; ++i) {
        queue->async([this] { click(pointer->pointerEvents()); });
    }
    ASSERT_TRUE(untilDeeds(4000));
    EXPECT_TRUE(areClicks(1000));
}

TEST_F(VirtualPointerTest, ClicksWaitForNoCompositorAndNoneIsLost) {
    connectToUsualCompositor();
    compositor->pause();
    constexpr std::size_t clicks = 5000;
    auto clicked = std::async(std::launch::async, [this] {
        for (std::size_t i = 0; i < clicks; ++i) {
            click(pointer->pointerEvents());
        }
    });
    ASSERT_EQ(clicked.wait_for(std::chrono::duration<double>(patience)), std::future_status::ready);
    EXPECT_TRUE(pointer->isTrusted());
    EXPECT_TRUE(pointer->pointerEvents().isKeeping());
    compositor->goOn();
    ASSERT_TRUE(untilDeeds(4 * clicks));
    idle();
    EXPECT_TRUE(areClicks(clicks));
    EXPECT_FALSE(pointer->pointerEvents().isKeeping());
}

TEST_F(VirtualPointerTest, AClickThatIsNotReadCountsAsKept) {
    connectToUsualCompositor();
    platform::PointerEvents& events = pointer->pointerEvents();
    for (int round = 1; round <= 3; ++round) {
        ASSERT_TRUE(until([&events] { return !events.isKeeping(); }));
        compositor->pause();
        click(events);
        EXPECT_TRUE(events.isKeeping());
        compositor->goOn();
        ASSERT_TRUE(untilDeeds(static_cast<std::size_t>(4 * round)));
    }
    EXPECT_FALSE(events.isKeeping());
    // What is still on its way to a pointer that is gone keeps nobody waiting.
    compositor->pause();
    click(events);
    compositor->endClients();
    ASSERT_TRUE(untilMissing());
    EXPECT_FALSE(events.isKeeping());
}

TEST_F(VirtualPointerTest, WhatIsUnderWayIsReadInOnePiece) {
    connectToUsualCompositor();
    constexpr std::size_t onePiece = 4096;
    for (int round = 0; round < 3; ++round) {
        compositor->pause();
        std::size_t waitingBefore = 0;
        std::size_t sent = 0;
        for (int i = 0; i < 500; ++i) {
            click(pointer->pointerEvents());
            const std::size_t waiting = compositor->bytesWaiting();
            ASSERT_LE(waiting, onePiece);
            sent += waiting > waitingBefore ? 1U : 0U;
            waitingBefore = waiting;
        }
        EXPECT_GT(sent, 20U) << "no more is kept than has to be";
        compositor->goOn();
        ASSERT_TRUE(untilDeeds(static_cast<std::size_t>(4 * 500 * (round + 1))));
        idle();
    }
    EXPECT_TRUE(areClicks(1500));
}

TEST_F(VirtualPointerTest, WhatWasKeptForAPointerThatIsTakenBackIsDropped) {
    connectToUsualCompositor();
    compositor->pause();
    for (int i = 0; i < 500; ++i) {
        click(pointer->pointerEvents());
    }
    compositor->withdrawPointers();
    ASSERT_TRUE(untilMissing());
    compositor->offerPointers();
    compositor->goOn();
    ASSERT_TRUE(untilOffered());
    idle();
    const std::size_t clicksBefore = compositor->deeds.size() / 4;
    EXPECT_LT(clicksBefore, 100U);
    EXPECT_TRUE(areClicks(clicksBefore));
    EXPECT_TRUE(click(pointer->pointerEvents()));
    ASSERT_TRUE(untilDeeds(4 * (clicksBefore + 1)));
    EXPECT_TRUE(areClicks(clicksBefore + 1));
}

TEST_F(VirtualPointerTest, TheLoopRestsWhileNothingIsClicked) {
    connectToUsualCompositor();
    for (int i = 0; i < 100; ++i) {
        click(pointer->pointerEvents());
    }
    ASSERT_TRUE(untilDeeds(400));
    idle();
    EXPECT_LT(turnsDuring(0.2), 5);
}

} // namespace velloran::tests
