#include "async/MonotonicTimer.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>

namespace velloran {

namespace {

class MonotonicTimerTest : public testing::Test {
protected:
    static constexpr std::chrono::hours farAway{1};
    /// For what is sure to come.
    static constexpr int forever = -1;

    static bool isReadable(const MonotonicTimer& timer, int milliseconds = 0) {
        pollfd descriptor{timer.descriptor(), POLLIN, 0};
        return poll(&descriptor, 1, milliseconds) == 1;
    }

    static Moment now() { return std::chrono::steady_clock::now(); }
};

using MonotonicTimerDeathTest = MonotonicTimerTest;

} // namespace

TEST_F(MonotonicTimerTest, ComesAtItsMomentAndNotBefore) {
    const MonotonicTimer timer(MonotonicTimer::Reading::returns);
    const Moment moment = now() + std::chrono::milliseconds(5);
    timer.arm(moment);
    ASSERT_TRUE(isReadable(timer, forever));
    EXPECT_GE(now(), moment);
    timer.take();
    EXPECT_FALSE(isReadable(timer)) << "it comes once";
}

TEST_F(MonotonicTimerTest, SleepsUntilItsMoment) {
    const MonotonicTimer timer(MonotonicTimer::Reading::waits);
    const Moment moment = now() + std::chrono::milliseconds(5);
    timer.arm(moment);
    timer.take();
    EXPECT_GE(now(), moment);
}

TEST_F(MonotonicTimerTest, MomentThatHasPassedComesAtOnce) {
    const MonotonicTimer timer(MonotonicTimer::Reading::returns);
    for (const Moment moment : {Moment::min(), Moment(), now()}) {
        EXPECT_FALSE(isReadable(timer));
        timer.arm(moment);
        EXPECT_TRUE(isReadable(timer, forever));
        timer.take();
    }
}

TEST_F(MonotonicTimerTest, HasOneMomentAtATime) {
    const MonotonicTimer timer(MonotonicTimer::Reading::returns);
    timer.arm(now());
    timer.arm(now() + farAway);
    EXPECT_FALSE(isReadable(timer));
    timer.take();
    timer.arm(Moment::max());
    EXPECT_FALSE(isReadable(timer));
    timer.arm(now());
    EXPECT_TRUE(isReadable(timer, forever));
    timer.disarm();
    EXPECT_FALSE(isReadable(timer));
}

TEST_F(MonotonicTimerDeathTest, NeedsADescriptor) {
    EXPECT_DEATH(
        {
            const rlimit none{};
            setrlimit(RLIMIT_NOFILE, &none);
            const MonotonicTimer timer(MonotonicTimer::Reading::returns);
        },
        "^Fatal error: The system grants no timer\n");
}

} // namespace velloran
