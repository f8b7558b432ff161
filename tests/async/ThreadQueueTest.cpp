#include "async/ThreadQueue.h"

#include "fakes/NoMoreThreads.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/prctl.h>

#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace velloran {

TEST(ThreadQueue, DoesItsJobsInOrderOnOneOtherThread) {
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    {
        ThreadQueue queue("velloran.engine");
        for (int job = 0; job < 10'000; ++job) {
            queue.async([&, job] {
                order.push_back(job);
                threads.push_back(std::this_thread::get_id());
            });
        }
    }
    ASSERT_EQ(order.size(), 10'000U);
    for (std::size_t index = 0; index < order.size(); ++index) {
        ASSERT_EQ(order[index], static_cast<int>(index));
        ASSERT_EQ(threads[index], threads.front());
    }
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(ThreadQueue, DrainsWhatWasHandedOverBeforeItsEnd) {
    std::promise<void> gate;
    int done = 0;
    {
        ThreadQueue queue("velloran.engine");
        queue.async([opened = gate.get_future().share()] { opened.wait(); });
        for (int job = 0; job < 100; ++job) {
            queue.async([&] { ++done; });
        }
        gate.set_value();
    }
    EXPECT_EQ(done, 100);
}

TEST(ThreadQueue, JobsMayHandOverJobs) {
    std::promise<int> result;
    ThreadQueue queue("velloran.engine");
    queue.async([&] { queue.async([&] { result.set_value(42); }); });
    EXPECT_EQ(result.get_future().get(), 42);
}

TEST(ThreadQueue, TakesJobsFromSeveralThreads) {
    int done = 0;
    {
        ThreadQueue queue("velloran.engine");
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (int job = 0; job < 1000; ++job) {
                    queue.async([&] { ++done; });
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(done, 4000);
}

TEST(ThreadQueue, ForgetsNoJobWhoeverElseHandsSomeOver) {
    int done = 0;
    {
        ThreadQueue queue("velloran.engine");
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                // Each waits for its job, so that the queue runs empty again and again.
                for (int job = 0; job < 2000; ++job) {
                    const auto isDone = std::make_shared<std::promise<void>>();
                    queue.asyncAt(std::chrono::steady_clock::now() + std::chrono::microseconds(20 * thread),
                                  [&done, isDone] {
                                      ++done;
                                      isDone->set_value();
                                  });
                    if (isDone->get_future().wait_for(std::chrono::seconds(20)) != std::future_status::ready) {
                        ADD_FAILURE() << "job " << job << " of thread " << thread << " is forgotten";
                        return;
                    }
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(done, 8000);
}

TEST(ThreadQueue, ItsThreadCarriesTheLabelAndHasNoTimerSlack) {
    std::promise<std::string> name;
    std::promise<int> slack;
    ThreadQueue queue("velloran.engine");
    queue.async([&] {
        std::array<char, 16> buffer{};
        pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
        name.set_value(buffer.data());
        slack.set_value(prctl(PR_GET_TIMERSLACK, 0UL, 0UL, 0UL, 0UL));
    });
    EXPECT_EQ(name.get_future().get(), "velloran.engine");
    EXPECT_EQ(slack.get_future().get(), 1);
}

TEST(ThreadQueue, LongLabelIsCutForItsThread) {
    std::promise<std::string> name;
    ThreadQueue queue("a label of twenty-eight bytes");
    queue.async([&] {
        std::array<char, 16> buffer{};
        pthread_getname_np(pthread_self(), buffer.data(), buffer.size());
        name.set_value(buffer.data());
    });
    EXPECT_EQ(name.get_future().get(), "a label of twen");
}

TEST(ThreadQueueDeathTest, NeedsAThread) {
    EXPECT_DEATH(
        {
            const fakes::NoMoreThreads none;
            const ThreadQueue queue("velloran.engine");
        },
        "^Fatal error: The system grants no thread\n$");
}

TEST(ThreadQueue, LetsGoOfAJobBeforeTheNextOneRuns) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<bool> isGone;
    ThreadQueue queue("velloran.engine");
    queue.async([held = std::move(held)] { EXPECT_EQ(*held, 1); });
    queue.async([&] { isGone.set_value(watched.expired()); });
    EXPECT_TRUE(isGone.get_future().get());
}

} // namespace velloran
