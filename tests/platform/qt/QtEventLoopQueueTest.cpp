#include "platform/qt/QtEventLoopBench.h"

#include "async/SerialQueue.h"

#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <thread>

namespace velloran::platform::qt {

TEST_F(QtEventLoopTest, AQueueDoesItsJobsInOrderOnAThreadOfItsOwn) {
    std::vector<int> done;
    std::vector<std::thread::id> threads;
    auto queue = loop.makeSerialQueue("velloran.test");
    for (int index = 0; index < 1000; ++index) {
        queue->async([&, index] {
            done.push_back(index);
            threads.push_back(std::this_thread::get_id());
        });
    }
    // Its end waits for the jobs.
    queue.reset();
    ASSERT_EQ(done.size(), 1000U);
    for (int index = 0; index < 1000; ++index) {
        EXPECT_EQ(done[static_cast<std::size_t>(index)], index);
        EXPECT_EQ(threads[static_cast<std::size_t>(index)], threads.front());
    }
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST_F(QtEventLoopTest, AQueueDoesAJobAtAMomentOfTheClockOfTheLoop) {
    auto queue = loop.makeSerialQueue("velloran.test");
    const Moment due = later(loop.monotonicNow(), 5 * millisecond);
    std::promise<Moment> done;
    queue->asyncAt(due, [&] { done.set_value(loop.monotonicNow()); });
    EXPECT_GE(done.get_future().get(), due);
}

TEST_F(QtEventLoopTest, TheLoopDoesNotWaitForAQueue) {
    auto queue = loop.makeSerialQueue("velloran.test");
    std::vector<std::string> fromQueue;
    bool isOpen = false;
    std::mutex mutex;
    std::condition_variable opened;
    queue->async([&] {
        std::unique_lock lock(mutex);
        opened.wait(lock, [&] { return isOpen; });
        fromQueue.emplace_back("job");
    });
    loop.post(note("turn"));
    turnUntilCalls(1);
    {
        const std::lock_guard lock(mutex);
        EXPECT_TRUE(fromQueue.empty());
        isOpen = true;
    }
    opened.notify_one();
    queue.reset();
    EXPECT_EQ(fromQueue.size(), 1U);
}

TEST_F(QtEventLoopTest, CallsFromOtherThreadsWakeTheLoopAndComeInTheirOrder) {
    constexpr int callsOfEach = 1000;
    std::vector<std::vector<int>> orders(4);
    std::vector<std::jthread> threads;
    for (auto& order : orders) {
        threads.emplace_back([this, &order] {
            for (int call = 0; call < callsOfEach; ++call) {
                loop.postFromAnyThread([this, &order, call, own = std::this_thread::get_id()] {
                    order.push_back(call);
                    EXPECT_EQ(QThread::currentThread(), loop.thread());
                    EXPECT_NE(std::this_thread::get_id(), own);
                });
            }
        });
    }
    for (const auto& order : orders) {
        turnUntil([&order] { return order.size() == callsOfEach; });
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
}

TEST(QtEventLoopEnd, PendingCallsAreDroppedEvenWhenTheyHoldEachOther) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    bool isCalled = false;
    {
        QtEventLoop loop;
        // Letting go of any of these cancels others, of both kinds, some of which are gone by then.
        auto calls = std::make_shared<std::vector<ScheduledCall>>();
        for (int index = 0; index < 20; ++index) {
            const auto function = [held, calls, &isCalled] { isCalled = true; };
            loop.post(function);
            loop.callAfter(nanosecondsPerSecond, function);
            auto other = std::make_shared<ScheduledCall>(loop, loop.post([&isCalled] { isCalled = true; }));
            loop.callAfter(nanosecondsPerSecond, [held, other] {});
            auto third = std::make_shared<ScheduledCall>(
                loop, loop.callAfter(millisecond, [held, &isCalled] { isCalled = true; }));
            loop.post([held, third] {});
            calls->emplace_back(loop, loop.callAfter(2 * nanosecondsPerSecond, [held] {}));
        }
        held.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(isCalled);
}

TEST(QtEventLoopEnd, WhatIsAskedForWhileItEndsIsDroppedToo) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    bool isCalled = false;
    {
        QtEventLoop loop;
        // Its end asks for three more calls, and happens only when the end of another has asked for it.
        const auto function = [held, &isCalled] { isCalled = true; };
        const std::shared_ptr<void> second(nullptr, [function, &loop](void*) {
            loop.post(function);
            loop.callAfter(0, function);
            loop.postFromAnyThread(function);
        });
        const std::shared_ptr<void> first(nullptr, [second, &loop](void*) { loop.postFromAnyThread([second] {}); });
        loop.postFromAnyThread([first] {});
        held.reset();
    }
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(isCalled);
}

} // namespace velloran::platform::qt
