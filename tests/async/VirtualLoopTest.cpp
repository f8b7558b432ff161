#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace velloran::fakes {

namespace {

using Order = std::vector<int>;

constexpr auto readable = EventLoop::Readiness::readable;
constexpr auto writable = EventLoop::Readiness::writable;

/// A descriptor that can be read when it begins with one, and always be written.
struct Counter {
    explicit Counter(unsigned begin) : descriptor(eventfd(begin, EFD_NONBLOCK | EFD_CLOEXEC)) {}

    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;

    ~Counter() { close(descriptor); }

    const int descriptor;
};

} // namespace

TEST(VirtualLoop, CallsInTheOrderOfTimeThenOfAsking) {
    VirtualLoop loop;
    Order order;
    loop.callAfter(20, [&] { order.push_back(3); });
    loop.callAfter(10, [&] { order.push_back(1); });
    loop.callAfter(10, [&] { order.push_back(2); });
    loop.post([&] { order.push_back(0); });
    loop.advanceNanoseconds(20);
    EXPECT_EQ(order, (Order{0, 1, 2, 3}));
    EXPECT_EQ(loop.elapsed(), 20U);
}

TEST(VirtualLoop, TimeIsExactInsideACall) {
    VirtualLoop loop;
    const Date begin = loop.now();
    double at = 0.0;
    loop.callAfter(1'500'000'000, [&] { at = loop.now() - begin; });
    loop.advance(10.0);
    EXPECT_EQ(at, 1.5);
    EXPECT_EQ(loop.now() - begin, 10.0);
}

TEST(VirtualLoop, CancelledCallsDoNotHappen) {
    VirtualLoop loop;
    Order order;
    const auto first = loop.post([&] { order.push_back(1); });
    EventLoop::CallId third{};
    loop.post([&] { loop.cancel(third); });
    third = loop.post([&] { order.push_back(3); });
    loop.cancel(first);
    loop.cancel(EventLoop::CallId::none);
    loop.runDue();
    loop.cancel(first);
    EXPECT_TRUE(order.empty());
}

TEST(VirtualLoop, SettingTheWallClockMovesNoCall) {
    VirtualLoop loop;
    const Date begin = loop.now();
    bool called = false;
    loop.callAfter(nanosecondsPerSecond, [&] { called = true; });
    loop.shiftWallClock(3600.0);
    EXPECT_EQ(loop.now() - begin, 3600.0);
    loop.runDue();
    EXPECT_FALSE(called);
    loop.advance(1.0);
    EXPECT_TRUE(called);
}

TEST(VirtualLoop, TimeThatACallSpendsMakesTheOthersLate) {
    VirtualLoop loop;
    std::vector<std::uint64_t> times;
    loop.callAfter(10, [&] {
        loop.spend(1.0);
        loop.post([&] { times.push_back(loop.elapsed()); });
    });
    loop.callAfter(20, [&] { times.push_back(loop.elapsed()); });
    loop.advanceNanoseconds(30);
    EXPECT_EQ(loop.elapsed(), 1'000'000'010U);
    EXPECT_EQ(times, std::vector<std::uint64_t>{1'000'000'010U})
        << "what was posted is due after the time to advance to";
    loop.runDue();
    EXPECT_EQ(times.size(), 2U);
    EXPECT_EQ(loop.elapsed(), 1'000'000'010U);
}

TEST(VirtualLoop, QueueRunsItsJobsInOrderInLaterTurns) {
    VirtualLoop loop;
    Order order;
    const auto queue = loop.makeSerialQueue("some.queue");
    EXPECT_EQ(loop.queueLabel(), "some.queue");
    queue->async([&] { order.push_back(1); });
    queue->async([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    loop.runDue();
    EXPECT_EQ(order, (Order{1, 2}));
}

TEST(VirtualLoop, QueueDrainsAtItsEnd) {
    VirtualLoop loop;
    Order order;
    {
        const auto queue = loop.makeSerialQueue("some.queue");
        queue->async([&] { order.push_back(1); });
    }
    EXPECT_EQ(order, Order{1});
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST(VirtualLoop, WatchesHearOfTheirDescriptorWhileTheyExist) {
    VirtualLoop loop;
    Order order;
    const Counter full(1);
    const Counter empty(0);
    auto watch = loop.watch(full.descriptor, readable, [&] { order.push_back(1); });
    const auto writing = loop.watch(empty.descriptor, writable, [&] { order.push_back(2); });
    const auto other = loop.watch(empty.descriptor, readable, [&] { order.push_back(3); });
    EXPECT_TRUE(order.empty());
    loop.look();
    EXPECT_EQ(order, (Order{1, 2}));
    watch.reset();
    loop.look();
    EXPECT_EQ(order, (Order{1, 2, 2}));
}

TEST(VirtualLoop, AWatchThatEndsInsideACallIsNotCalledAnyMore) {
    VirtualLoop loop;
    Order order;
    const Counter full(1);
    std::unique_ptr<EventLoop::Watch> first;
    std::unique_ptr<EventLoop::Watch> second;
    first = loop.watch(full.descriptor, readable, [&, held = std::make_shared<int>(1)] {
        first.reset();
        second.reset();
        order.push_back(*held);
    });
    second = loop.watch(full.descriptor, readable, [&] { order.push_back(2); });
    loop.look();
    loop.look();
    EXPECT_EQ(order, Order{1});
}

TEST(VirtualLoop, TakesCallsFromEveryThread) {
    constexpr int callsOfEach = 1000;
    VirtualLoop loop;
    std::vector<Order> orders(4);
    std::vector<std::jthread> threads;
    for (Order& order : orders) {
        threads.emplace_back([&loop, &order] {
            for (int call = 0; call < callsOfEach; ++call) {
                loop.postFromAnyThread([&order, call] { order.push_back(call); });
            }
        });
    }
    for (const Order& order : orders) {
        while (order.size() < callsOfEach) {
            loop.runDue();
        }
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
    EXPECT_FALSE(loop.runNext());
}

TEST(VirtualLoop, QueueDoesEachJobAtItsMomentAndInOrder) {
    VirtualLoop loop;
    loop.advanceNanoseconds(100);
    std::vector<std::pair<int, std::uint64_t>> done;
    const auto note = [&](int job) { return [&, job] { done.emplace_back(job, loop.elapsed()); }; };
    const auto queue = loop.makeSerialQueue("jobs");
    queue->asyncAt(later(loop.monotonicNow(), 50), note(1));
    queue->async(note(2));
    queue->asyncAt(later(loop.monotonicNow(), 20), note(3));
    queue->asyncAt(later(loop.monotonicNow(), 70), note(4));
    loop.advanceNanoseconds(1000);
    queue->asyncAt(Moment(), note(5));
    loop.runDue();
    EXPECT_EQ(done, (decltype(done){{1, 150}, {2, 150}, {3, 150}, {4, 170}, {5, 1100}}));
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST(VirtualLoop, QueueThatEndsDoesAtOnceWhatIsNotDueYet) {
    VirtualLoop loop;
    Order order;
    auto queue = loop.makeSerialQueue("jobs");
    queue->asyncAt(later(loop.monotonicNow(), 50), [&] { order.push_back(1); });
    queue->asyncAt(later(loop.monotonicNow(), 90), [&] { order.push_back(2); });
    loop.advanceNanoseconds(49);
    EXPECT_TRUE(order.empty());
    queue.reset();
    EXPECT_EQ(order, (Order{1, 2}));
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST(ScheduledCall, CancelsAtItsEndAndWhenAssignedOver) {
    VirtualLoop loop;
    Order order;
    {
        const ScheduledCall call(loop, loop.post([&] { order.push_back(1); }));
        ScheduledCall other(loop, loop.post([&] { order.push_back(2); }));
        other = ScheduledCall(loop, loop.post([&] { order.push_back(3); }));
        loop.runDue();
        EXPECT_EQ(order, (Order{1, 3}));
        other = ScheduledCall(loop, loop.post([&] { order.push_back(4); }));
        const ScheduledCall moved = std::move(other);
        EXPECT_EQ(loop.pendingCalls(), 1U);
    }
    loop.runDue();
    EXPECT_EQ(order, (Order{1, 3}));
}

TEST(ScheduledCall, SurvivesBeingAssignedToItself) {
    VirtualLoop loop;
    Order order;
    ScheduledCall call(loop, loop.post([&] { order.push_back(1); }));
    ScheduledCall& same = call;
    call = std::move(same);
    loop.runDue();
    EXPECT_EQ(order, Order{1});
}

} // namespace velloran::fakes
