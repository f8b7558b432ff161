#include "ui/FrameThrottle.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace velloran {

namespace {

constexpr std::uint64_t frame = 16'666'667;

class FrameThrottleTest : public testing::Test {
protected:
    using Times = std::vector<std::uint64_t>;

    fakes::VirtualLoop loop;
    /// When the function was called, in nanoseconds.
    Times served;
    std::unique_ptr<FrameThrottle> throttle =
        std::make_unique<FrameThrottle>(loop, [this] { served.push_back(loop.elapsed()); });
};

} // namespace

TEST_F(FrameThrottleTest, WakesNobodyUntilItIsAsked) {
    EXPECT_EQ(loop.pendingCalls(), 0U);
    loop.advance(10.0);
    EXPECT_TRUE(served.empty());
}

TEST_F(FrameThrottleTest, FirstRequestIsServedInTheNextTurn) {
    throttle->request();
    EXPECT_TRUE(served.empty()) << "not inside the request";
    loop.runDue();
    EXPECT_EQ(served, Times{0});
}

TEST_F(FrameThrottleTest, RequestsOfOneTurnAreServedTogether) {
    throttle->request();
    throttle->request();
    throttle->request();
    loop.advance(1.0);
    EXPECT_EQ(served, Times{0});
}

TEST_F(FrameThrottleTest, FurtherRequestsAreServedTogetherWhenTheFrameIsOver) {
    throttle->request();
    loop.runDue();
    throttle->request();
    loop.advanceNanoseconds(frame / 2);
    throttle->request();
    loop.advanceNanoseconds(frame - frame / 2 - 1);
    EXPECT_EQ(served, Times{0});
    loop.advanceNanoseconds(1);
    EXPECT_EQ(served, (Times{0, frame}));
    loop.advance(1.0);
    EXPECT_EQ(served, (Times{0, frame}));
}

TEST_F(FrameThrottleTest, ServesOnceAFrameHoweverOftenItIsAsked) {
    for (int request = 0; request < 1000; ++request) {
        throttle->request();
        loop.advance(0.001);
    }
    ASSERT_EQ(served.size(), 60U);
    for (std::size_t place = 0; place < served.size(); ++place) {
        EXPECT_EQ(served[place], place * frame);
    }
}

TEST_F(FrameThrottleTest, ServingAfterAFrameUsesUpTheNextOne) {
    throttle->request();
    loop.runDue();
    throttle->request();
    loop.advanceNanoseconds(frame);
    throttle->request();
    loop.advanceNanoseconds(frame - 1);
    EXPECT_EQ(served, (Times{0, frame}));
    loop.advanceNanoseconds(1);
    EXPECT_EQ(served, (Times{0, frame, 2 * frame}));
}

TEST_F(FrameThrottleTest, QuietTimeMakesTheNextRequestAFirstOne) {
    throttle->request();
    loop.advance(1.0);
    throttle->request();
    loop.runDue();
    EXPECT_EQ(served, (Times{0, nanosecondsPerSecond}));
}

TEST_F(FrameThrottleTest, GoesToRestWhenNothingIsAsked) {
    throttle->request();
    loop.runDue();
    EXPECT_EQ(loop.pendingCalls(), 1U) << "the end of the frame";
    loop.advanceNanoseconds(frame);
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST_F(FrameThrottleTest, RequestFromInsideTheFunctionWaitsForTheFrame) {
    throttle = std::make_unique<FrameThrottle>(loop, [this] {
        served.push_back(loop.elapsed());
        if (served.size() < 3) {
            throttle->request();
        }
    });
    throttle->request();
    loop.advance(1.0);
    EXPECT_EQ(served, (Times{0, frame, 2 * frame}));
}

TEST_F(FrameThrottleTest, ItsEndTakesWhatIsPendingWithIt) {
    throttle->request();
    throttle.reset();
    EXPECT_EQ(loop.pendingCalls(), 0U);
    loop.advance(1.0);
    EXPECT_TRUE(served.empty());
}

} // namespace velloran
