#include "platform/qt/QtEventLoopBench.h"

#include <QEvent>

#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>

namespace velloran::platform::qt {

namespace {

using Clock = std::chrono::steady_clock;

/// Keeps the thread busy, and so the loop from turning.
void stayBusy(std::chrono::milliseconds duration) {
    const Clock::time_point end = Clock::now() + duration;
    while (Clock::now() < end) {
    }
}

/// Calls a function when the toolkit delivers an event to it.
class Listener final : public QObject {
public:
    explicit Listener(std::function<void()> function) : function_(std::move(function)) {}

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::User) {
            function_();
            return true;
        }
        return QObject::event(event);
    }

private:
    std::function<void()> function_;
};

} // namespace

TEST_F(QtEventLoopTest, PostedFunctionsAreCalledLaterAndInOrder) {
    loop.post(note("a"));
    loop.post(note("b"));
    loop.post(note("c"));
    EXPECT_TRUE(journal.empty());
    turnUntilCalls(3);
    EXPECT_EQ(journal, (Journal{"a", "b", "c"}));
}

TEST_F(QtEventLoopTest, WhatIsPostedFromInsideBelongsToALaterTurn) {
    Listener listener(note("event"));
    loop.post([this] {
        journal.emplace_back("a");
        loop.post(note("b"));
    });
    QCoreApplication::postEvent(&listener, new QEvent(QEvent::User));
    turnUntilCalls(3);
    EXPECT_EQ(journal, (Journal{"a", "event", "b"}));
}

TEST_F(QtEventLoopTest, PostingForEverKeepsOutNobody) {
    int turns = 0;
    std::function<void()> again = [&] {
        ++turns;
        loop.post(again);
    };
    loop.post(again);
    loop.callAfter(millisecond, note("timed"));
    turnUntilCalls(1);
    EXPECT_GT(turns, 0);
}

TEST_F(QtEventLoopTest, AWaitLastsAtLeastThatLong) {
    for (const std::uint64_t wait : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{300'000}, 7 * millisecond}) {
        const Clock::time_point begin = Clock::now();
        Clock::duration waited = Clock::duration::zero();
        loop.callAfter(wait, [&] {
            waited = Clock::now() - begin;
            journal.emplace_back("done");
        });
        EXPECT_TRUE(journal.empty());
        turnUntilCalls(1);
        EXPECT_GE(waited, std::chrono::nanoseconds(wait));
        journal.clear();
    }
}

TEST_F(QtEventLoopTest, TimedCallsHappenInTheOrderOfTheirDeadlines) {
    loop.callAfter(9 * millisecond, note("third"));
    loop.callAfter(2 * millisecond, note("first"));
    loop.callAfter(5 * millisecond, note("second"));
    turnUntilCalls(3);
    EXPECT_EQ(journal, (Journal{"first", "second", "third"}));
}

TEST_F(QtEventLoopTest, EqualWaitsEndInTheOrderOfAsking) {
    Journal expected;
    for (int index = 0; index < 50; ++index) {
        expected.push_back(std::to_string(index));
        loop.callAfter(millisecond, note(expected.back()));
    }
    turnUntilCalls(expected.size());
    EXPECT_EQ(journal, expected);
}

TEST_F(QtEventLoopTest, DeadlinesThatHavePassedAreMadeUpForInOrder) {
    loop.callAfter(2 * millisecond, note("second"));
    loop.callAfter(millisecond, note("first"));
    loop.callAfter(0, note("zeroth"));
    stayBusy(std::chrono::milliseconds(5));
    EXPECT_TRUE(journal.empty());
    turnUntilCalls(3);
    EXPECT_EQ(journal, (Journal{"zeroth", "first", "second"}));
}

TEST_F(QtEventLoopTest, AnEarlierDeadlineOvertakesTheOneWaitedFor) {
    loop.callAfter(3'600 * nanosecondsPerSecond, note("in an hour"));
    loop.callAfter(millisecond, note("soon"));
    turnUntilCalls(1);
    EXPECT_EQ(journal, Journal{"soon"});
}

TEST_F(QtEventLoopTest, TheLongestWaitIsNotAShortOne) {
    const EventLoop::CallId call = loop.callAfter(std::numeric_limits<std::uint64_t>::max(), note("never"));
    turnUntilQuiet();
    EXPECT_TRUE(journal.empty());
    loop.cancel(call);
}

TEST_F(QtEventLoopTest, ACancelledCallDoesNotHappenAndLetsGoOfItsFunction) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    const EventLoop::CallId posted = loop.post([this, held] { journal.push_back("posted " + std::to_string(*held)); });
    const EventLoop::CallId timed =
        loop.callAfter(0, [this, held] { journal.push_back("timed " + std::to_string(*held)); });
    held.reset();
    EXPECT_FALSE(watched.expired());
    loop.cancel(posted);
    EXPECT_FALSE(watched.expired());
    loop.cancel(timed);
    EXPECT_TRUE(watched.expired());
    turnUntilQuiet();
    EXPECT_TRUE(journal.empty());
}

TEST_F(QtEventLoopTest, CancellingWhatIsGoneDoesNothing) {
    const EventLoop::CallId posted = loop.post(note("posted"));
    const EventLoop::CallId timed = loop.callAfter(0, note("timed"));
    turnUntilCalls(2);
    loop.cancel(posted);
    loop.cancel(timed);
    loop.cancel(EventLoop::CallId::none);
    loop.cancel(EventLoop::CallId{123'456'789});
    loop.post(note("other"));
    turnUntilCalls(3);
    EXPECT_EQ(journal.back(), "other");
}

TEST_F(QtEventLoopTest, ACallMayCancelItselfAndOthersOfTheSameTurn) {
    EventLoop::CallId first = EventLoop::CallId::none;
    EventLoop::CallId second = EventLoop::CallId::none;
    first = loop.post([&] {
        loop.cancel(first);
        loop.cancel(second);
        journal.emplace_back("first");
    });
    second = loop.post(note("second"));
    loop.post(note("third"));
    turnUntilCalls(2);
    turnUntilQuiet();
    EXPECT_EQ(journal, (Journal{"first", "third"}));
}

TEST_F(QtEventLoopTest, ATimedCallMayCancelItselfAndOthersThatAreDue) {
    EventLoop::CallId first = EventLoop::CallId::none;
    EventLoop::CallId second = EventLoop::CallId::none;
    first = loop.callAfter(0, [&] {
        loop.cancel(first);
        loop.cancel(second);
        journal.emplace_back("first");
    });
    second = loop.callAfter(0, note("second"));
    loop.callAfter(0, note("third"));
    stayBusy(std::chrono::milliseconds(1));
    turnUntilCalls(2);
    turnUntilQuiet();
    EXPECT_EQ(journal, (Journal{"first", "third"}));
}

TEST_F(QtEventLoopTest, CallsGoOnInAnEventLoopInsideACall) {
    loop.post([this] {
        QEventLoop inner;
        loop.callAfter(0, [&inner] { inner.quit(); });
        inner.exec();
        journal.emplace_back("outer");
    });
    loop.post(note("posted beside it"));
    turnUntilCalls(2);
    EXPECT_EQ(journal, (Journal{"posted beside it", "outer"}));

    journal.clear();
    loop.callAfter(0, [this] {
        QEventLoop inner;
        loop.post([this, &inner] {
            turnUntilCalls(1);
            inner.quit();
        });
        inner.exec();
        journal.emplace_back("outer");
    });
    loop.callAfter(0, note("timed beside it"));
    turnUntilCalls(2);
    EXPECT_EQ(journal, (Journal{"timed beside it", "outer"}));
}

TEST(QtEventLoopClock, NowIsTheWallClockSinceTheReferenceDate) {
    const QtEventLoop loop;
    // 2001-01-01 00:00:00 UTC.
    constexpr double referenceInUnixTime = 978'307'200.0;
    const auto unixNow = [] {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
    const double before = unixNow();
    const double now = loop.now().secondsSinceReference() + referenceInUnixTime;
    const double after = unixNow();
    // A double of this size is exact to a quarter of a microsecond.
    EXPECT_GE(now, before - 1e-6);
    EXPECT_LE(now, after + 1e-6);
}

} // namespace velloran::platform::qt
