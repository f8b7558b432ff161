#include "async/Task.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velloran {

namespace {

using fakes::VirtualLoop;

constexpr std::uint64_t second = nanosecondsPerSecond;

/// Notes what happened, and when its last owner has let go of it.
struct Journal {
    std::vector<std::string> entries;
};

struct Resource {
    explicit Resource(Journal& owner) : journal(owner) {}

    Resource(const Resource&) = delete;
    Resource& operator=(const Resource&) = delete;

    ~Resource() { journal.entries.emplace_back("released"); }

    Journal& journal;
};

Task sleepOnce(EventLoop&, Journal& journal, std::uint64_t nanoseconds) {
    const Resource resource(journal);
    journal.entries.emplace_back("begin");
    co_await taskSleep(nanoseconds);
    const Task::Cancellation cancellation = co_await taskCancellation();
    journal.entries.emplace_back(cancellation.isRequested() ? "cancelled" : "end");
}

Task sleepMany(EventLoop&, std::uint64_t& count, std::uint64_t times) {
    const Task::Cancellation cancellation = co_await taskCancellation();
    while (count < times && !cancellation.isRequested()) {
        co_await taskSleep(second);
        ++count;
    }
}

Task cancelItself(EventLoop&, std::optional<Task>& self, Journal& journal) {
    self->cancel();
    journal.entries.emplace_back("after cancel");
    co_await taskSleep(second);
    const Task::Cancellation cancellation = co_await taskCancellation();
    journal.entries.emplace_back(cancellation.isRequested() ? "sees it" : "misses it");
}

Task yieldOnce(EventLoop&, Journal& journal) {
    const Resource resource(journal);
    journal.entries.emplace_back("begin");
    co_await taskYield();
    const Task::Cancellation cancellation = co_await taskCancellation();
    journal.entries.emplace_back(cancellation.isRequested() ? "cancelled" : "end");
}

Task throwOnce(EventLoop&) {
    co_await taskYield();
    throw std::runtime_error("thrown by a test");
}

using Strings = std::vector<std::string>;

} // namespace

TEST(Task, StartsInALaterTurn) {
    Journal journal;
    VirtualLoop loop;
    const Task task = sleepOnce(loop, journal, second);
    EXPECT_TRUE(journal.entries.empty());
    loop.runDue();
    EXPECT_EQ(journal.entries, Strings{"begin"});
    EXPECT_FALSE(task.isFinished());
}

TEST(Task, SleepsForAsLongAsItSays) {
    Journal journal;
    VirtualLoop loop;
    const Task task = sleepOnce(loop, journal, second);
    loop.advanceNanoseconds(second - 1);
    EXPECT_EQ(journal.entries, Strings{"begin"});
    loop.advanceNanoseconds(1);
    EXPECT_EQ(journal.entries, (Strings{"begin", "end", "released"}));
    EXPECT_TRUE(task.isFinished());
}

TEST(Task, CancelWhileSleepingWakesInALaterTurn) {
    Journal journal;
    VirtualLoop loop;
    Task task = sleepOnce(loop, journal, 3600 * second);
    loop.runDue();
    task.cancel();
    EXPECT_EQ(journal.entries, Strings{"begin"});
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"begin", "cancelled", "released"}));
    EXPECT_EQ(loop.elapsed(), 0U);
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST(Task, CancelBeforeItsFirstStepIsSeenThere) {
    Journal journal;
    VirtualLoop loop;
    Task task = sleepOnce(loop, journal, second);
    task.cancel();
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"begin", "cancelled", "released"}));
}

TEST(Task, CancelFromInsideTakesEffectAtTheNextWait) {
    Journal journal;
    std::optional<Task> task;
    VirtualLoop loop;
    task = cancelItself(loop, task, journal);
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"after cancel", "sees it"}));
    EXPECT_TRUE(task->isFinished());
}

TEST(Task, CancelTwiceOrAfterTheEndDoesNothing) {
    Journal journal;
    VirtualLoop loop;
    Task task = sleepOnce(loop, journal, second);
    loop.runDue();
    task.cancel();
    task.cancel();
    loop.runDue();
    task.cancel();
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"begin", "cancelled", "released"}));
}

TEST(Task, LosingTheHandleCancelsNothing) {
    Journal journal;
    VirtualLoop loop;
    { const Task task = sleepOnce(loop, journal, second); }
    loop.advance(1.0);
    EXPECT_EQ(journal.entries, (Strings{"begin", "end", "released"}));
}

TEST(Task, DestroyedWhileSuspendedReleasesWhatItHolds) {
    Journal journal;
    std::optional<Task> task;
    {
        VirtualLoop loop;
        task = sleepOnce(loop, journal, second);
        loop.runDue();
    }
    EXPECT_EQ(journal.entries, (Strings{"begin", "released"}));
    EXPECT_FALSE(task->isFinished());
}

TEST(Task, DestroyedBeforeItsFirstStep) {
    Journal journal;
    {
        VirtualLoop loop;
        const Task task = sleepOnce(loop, journal, second);
    }
    EXPECT_TRUE(journal.entries.empty());
}

TEST(Task, DestroyedWithItsLoopAfterACancel) {
    Journal journal;
    {
        VirtualLoop loop;
        Task task = sleepOnce(loop, journal, second);
        loop.runDue();
        task.cancel();
    }
    EXPECT_EQ(journal.entries, (Strings{"begin", "released"}));
}

TEST(Task, YieldLetsTheOthersComeFirstAndTakesNoTime) {
    Journal journal;
    VirtualLoop loop;
    const Task task = yieldOnce(loop, journal);
    loop.post([&] { journal.entries.emplace_back("other"); });
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"begin", "other", "end", "released"}));
    EXPECT_EQ(loop.elapsed(), 0U);
}

TEST(Task, YieldIsOneTurn) {
    Journal journal;
    VirtualLoop loop;
    const Task task = yieldOnce(loop, journal);
    ASSERT_TRUE(loop.runNext());
    EXPECT_EQ(journal.entries, Strings{"begin"});
    EXPECT_EQ(loop.pendingCalls(), 1U);
    ASSERT_TRUE(loop.runNext());
    EXPECT_TRUE(task.isFinished());
}

TEST(Task, CancelDuringAYieldIsSeenAfterIt) {
    Journal journal;
    VirtualLoop loop;
    Task task = yieldOnce(loop, journal);
    ASSERT_TRUE(loop.runNext());
    task.cancel();
    EXPECT_EQ(loop.pendingCalls(), 1U);
    loop.runDue();
    EXPECT_EQ(journal.entries, (Strings{"begin", "cancelled", "released"}));
}

TEST(Task, DestroyedDuringAYield) {
    Journal journal;
    {
        VirtualLoop loop;
        const Task task = yieldOnce(loop, journal);
        ASSERT_TRUE(loop.runNext());
    }
    EXPECT_EQ(journal.entries, (Strings{"begin", "released"}));
}

TEST(TaskDeathTest, ExceptionEndsTheProgram) {
    VirtualLoop loop;
    const Task task = throwOnce(loop);
    EXPECT_DEATH(loop.runDue(), "terminate called");
}

TEST(Task, SleepsAMillionTimes) {
    VirtualLoop loop;
    std::uint64_t count = 0;
    const Task task = sleepMany(loop, count, 1'000'000);
    loop.advanceNanoseconds(1'000'000 * second);
    EXPECT_EQ(count, 1'000'000U);
    EXPECT_TRUE(task.isFinished());
}

TEST(Task, ManyAtOnceKeepTheirOrder) {
    Journal journal;
    VirtualLoop loop;
    std::vector<Task> tasks;
    for (int index = 0; index < 100; ++index) {
        tasks.push_back(sleepOnce(loop, journal, second));
    }
    loop.runDue();
    for (std::size_t index = 0; index < tasks.size(); index += 2) {
        tasks[index].cancel();
    }
    loop.runDue();
    EXPECT_EQ(std::count(journal.entries.begin(), journal.entries.end(), "cancelled"), 50);
    loop.advance(1.0);
    EXPECT_EQ(std::count(journal.entries.begin(), journal.entries.end(), "end"), 50);
    EXPECT_EQ(std::count(journal.entries.begin(), journal.entries.end(), "released"), 100);
}

} // namespace velloran
