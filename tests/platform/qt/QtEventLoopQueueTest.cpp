#include "platform/qt/QtEventLoopBench.h"

#include "async/SerialQueue.h"

#include <condition_variable>
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
    bool isCalled = false;
    {
        QtEventLoop loop;
        // Its end asks for two more calls.
        const std::shared_ptr<void> asking(nullptr, [&](void*) {
            loop.post([&isCalled] { isCalled = true; });
            loop.callAfter(0, [&isCalled] { isCalled = true; });
        });
        loop.post([asking] {});
    }
    EXPECT_FALSE(isCalled);
}
} // namespace velloran::platform::qt
