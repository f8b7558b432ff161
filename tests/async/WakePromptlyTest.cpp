#include "async/wakePromptly.h"

#include "async/ThreadQueue.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <future>
#include <thread>

namespace velloran {

namespace {

class WakePromptlyTest : public testing::Test {
protected:
    static constexpr std::uint64_t shortTurn = 100'000;

    /// What the system tells of the calling thread's scheduling, in the structure's first version: six words of 64
    /// bits, of which the fourth is the length of a turn.
    using Attributes = std::array<std::uint64_t, 6>;

    static Attributes attributes() {
        Attributes words{};
        EXPECT_EQ(syscall(SYS_sched_getattr, 0, words.data(), sizeof words, 0U), 0);
        return words;
    }

    static std::uint64_t turn() { return attributes()[3]; }

    /// Whether a thread may have turns of a length of its own here.
    static bool canChooseTurns() {
        return std::async(std::launch::async,
                          [] {
                              constexpr std::uint64_t other = 7'000'000;
                              Attributes words = attributes();
                              words[3] = other;
                              return syscall(SYS_sched_setattr, 0, words.data(), 0U) == 0 && turn() == other;
                          })
            .get();
    }
};

} // namespace

TEST_F(WakePromptlyTest, HasNoTimerSlackAndTheOtherThreadsKeepTheirs) {
    const int before = prctl(PR_GET_TIMERSLACK, 0UL, 0UL, 0UL, 0UL);
    std::thread([] {
        wakePromptly();
        EXPECT_EQ(prctl(PR_GET_TIMERSLACK, 0UL, 0UL, 0UL, 0UL), 1);
    }).join();
    EXPECT_EQ(prctl(PR_GET_TIMERSLACK, 0UL, 0UL, 0UL, 0UL), before);
}

TEST_F(WakePromptlyTest, ThreadOfAQueueHasShortTurns) {
    if (!canChooseTurns()) {
        GTEST_SKIP() << "the system knows of no such turns";
    }
    const std::uint64_t before = turn();
    std::promise<std::uint64_t> ofQueue;
    ThreadQueue queue("velloran.engine");
    queue.async([&] { ofQueue.set_value(turn()); });
    EXPECT_EQ(ofQueue.get_future().get(), shortTurn);
    EXPECT_EQ(turn(), before);
}

TEST_F(WakePromptlyTest, ANiceValueStays) {
    std::thread([] {
        const auto self = static_cast<id_t>(gettid());
        // Anybody may go up, and nobody beyond 19.
        const int nice = std::min(getpriority(PRIO_PROCESS, self) + 1, 19);
        ASSERT_EQ(setpriority(PRIO_PROCESS, self, nice), 0);
        wakePromptly();
        EXPECT_EQ(getpriority(PRIO_PROCESS, self), nice);
    }).join();
}

TEST_F(WakePromptlyTest, AnotherPolicyStays) {
    std::thread([] {
        const sched_param none{};
        ASSERT_EQ(sched_setscheduler(0, SCHED_BATCH, &none), 0);
        const Attributes before = attributes();
        wakePromptly();
        EXPECT_EQ(attributes(), before);
    }).join();
}

} // namespace velloran
