#include "async/BackgroundJob.h"

#include "fakes/NoMoreThreads.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>
#include <thread>

namespace velloran {

namespace {

using namespace std::chrono_literals;

/// Nobody waits that long but in a test that fails.
constexpr auto forEver = 60s;

/// A job that waits, every time, until the test lets it go on.
class HeldJob {
public:
    void operator()() {
        std::unique_lock lock(mutex_);
        ++begun_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return ended_ < released_; });
        ++ended_;
        changed_.notify_all();
    }

    void release(int times) {
        const std::lock_guard lock(mutex_);
        released_ += times;
        changed_.notify_all();
    }

    bool waitUntilBegun(int times) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, forEver, [&] { return begun_ >= times; });
    }

    bool waitUntilEnded(int times) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, forEver, [&] { return ended_ >= times; });
    }

    [[nodiscard]] int begun() {
        const std::lock_guard lock(mutex_);
        return begun_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int begun_ = 0;
    int ended_ = 0;
    int released_ = 0;
};

class BackgroundJobTest : public testing::Test {
protected:
    std::shared_ptr<HeldJob> held = std::make_shared<HeldJob>();
    std::unique_ptr<BackgroundJob> job =
        std::make_unique<BackgroundJob>("velloran.saving and more", [held = held] { (*held)(); });
};

} // namespace

TEST_F(BackgroundJobTest, WithoutARequestThereIsNothingToWaitFor) {
    EXPECT_TRUE(job->waitUntilDone(0ms));
    EXPECT_EQ(held->begun(), 0);
}

TEST_F(BackgroundJobTest, ARequestDoesNotWaitForTheJob) {
    job->request();
    EXPECT_FALSE(job->waitUntilDone(0ms));
    ASSERT_TRUE(held->waitUntilBegun(1));
    EXPECT_FALSE(job->waitUntilDone(1ms));
    held->release(1);
    EXPECT_TRUE(job->waitUntilDone(forEver));
    EXPECT_EQ(held->begun(), 1);
}

TEST_F(BackgroundJobTest, RequestsDuringTheJobHaveItDoneOnceMore) {
    job->request();
    ASSERT_TRUE(held->waitUntilBegun(1));
    for (int request = 0; request < 100; ++request) {
        job->request();
    }
    held->release(2);
    EXPECT_TRUE(job->waitUntilDone(forEver));
    EXPECT_EQ(held->begun(), 2);
    job->request();
    held->release(1);
    EXPECT_TRUE(job->waitUntilDone(forEver));
    EXPECT_EQ(held->begun(), 3);
}

TEST_F(BackgroundJobTest, ItsEndWaitsForNothingAndBeginsNothing) {
    job->request();
    ASSERT_TRUE(held->waitUntilBegun(1));
    job->request();
    job.reset();
    held->release(2);
    ASSERT_TRUE(held->waitUntilEnded(1));
    // What is left of the thread lets go of the job when it is done with it.
    while (held.use_count() > 1) {
        std::this_thread::yield();
    }
    EXPECT_EQ(held->begun(), 1);
}

TEST_F(BackgroundJobTest, ItsEndTakesAnIdleThreadAlong) {
    held->release(1);
    job->request();
    ASSERT_TRUE(job->waitUntilDone(forEver));
    job.reset();
    EXPECT_EQ(held.use_count(), 1);
}

TEST(BackgroundJob, RunsOnAThreadOfItsOwnThatTakesNoSignals) {
    std::array<char, 16> name{};
    sigset_t mask;
    sigemptyset(&mask);
    std::thread::id thread;
    BackgroundJob job("velloran.saving and more", [&] {
        thread = std::this_thread::get_id();
        pthread_getname_np(pthread_self(), name.data(), name.size());
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    });
    job.request();
    ASSERT_TRUE(job.waitUntilDone(forEver));
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_STREQ(name.data(), "velloran.saving");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD}) {
        EXPECT_EQ(sigismember(&mask, signal), 1) << signal;
    }
    sigset_t ours;
    pthread_sigmask(SIG_SETMASK, nullptr, &ours);
    EXPECT_EQ(sigismember(&ours, SIGCHLD), 0);
}

TEST(BackgroundJob, IsDoneAtOnceWhereTheSystemGrantsNoThread) {
    int times = 0;
    std::thread::id thread;
    BackgroundJob job("velloran.saving", [&] {
        ++times;
        thread = std::this_thread::get_id();
    });
    {
        const fakes::NoMoreThreads none;
        job.request();
        EXPECT_EQ(times, 1);
        EXPECT_EQ(thread, std::this_thread::get_id());
        EXPECT_TRUE(job.waitUntilDone(0ms));
    }
    job.request();
    ASSERT_TRUE(job.waitUntilDone(forEver));
    EXPECT_EQ(times, 2);
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(BackgroundJob, SeesWhatWasDoneBeforeTheRequestAndShowsWhatItDid) {
    int wanted = 0;
    int seen = 0;
    BackgroundJob job("velloran.saving", [&] { seen = wanted; });
    for (int value = 1; value <= 1000; ++value) {
        wanted = value;
        job.request();
        ASSERT_TRUE(job.waitUntilDone(forEver));
        ASSERT_EQ(seen, value);
    }
}

} // namespace velloran
