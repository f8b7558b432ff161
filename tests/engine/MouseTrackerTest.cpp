#include "engine/MouseTracker.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace velloran {

namespace {

class MouseTrackerTest : public testing::Test {
protected:
    void movePointer(double dx, double dy = 0.0) {
        platform.pointer = platform::Point{platform.pointer->x + dx, platform.pointer->y + dy};
    }

    void wait() { platform.loop.advance(0.08); }

    fakes::RecordingPlatform platform;
    MouseTracker tracker{platform.loop, platform.desktop};
};

} // namespace

TEST_F(MouseTrackerTest, TellsThePointerPosition) {
    EXPECT_EQ(tracker.currentPosition(), (platform::Point{300.0, 200.0}));
    platform.pointer.reset();
    EXPECT_EQ(tracker.currentPosition(), std::nullopt);
}

TEST_F(MouseTrackerTest, FirstQuestionAfterAResetIsAnsweredFalse) {
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
    tracker.reset();
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
}

TEST_F(MouseTrackerTest, UntouchedPointerIsStillAtTheFirstPollAfterASecond) {
    int polls = 1;
    while (!tracker.hasBeenStationary(1.0)) {
        wait();
        ++polls;
    }
    EXPECT_EQ(polls, 14);
    EXPECT_EQ(platform.loop.elapsed(), 1'040'000'000U);
}

TEST_F(MouseTrackerTest, ExactlyTheDurationIsEnough) {
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(1.0);
    EXPECT_TRUE(tracker.hasBeenStationary(1.0));
    EXPECT_FALSE(tracker.hasBeenStationary(1.001));
}

TEST_F(MouseTrackerTest, JumpOfTwoPointsKeepsTheStillPeriod) {
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(1.0);
    movePointer(2.0);
    EXPECT_TRUE(tracker.hasBeenStationary(1.0));
    movePointer(0.0, -2.0);
    EXPECT_TRUE(tracker.hasBeenStationary(1.0));
}

TEST_F(MouseTrackerTest, LargerJumpStartsThePeriodAnew) {
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(5.0);
    movePointer(2.01);
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(0.9);
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(0.1);
    EXPECT_TRUE(tracker.hasBeenStationary(1.0));
}

TEST_F(MouseTrackerTest, MovementAnswersFalseEvenForNoDuration) {
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    movePointer(50.0);
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
}

TEST_F(MouseTrackerTest, DistanceIsTheStraightLine) {
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    movePointer(1.4, 1.4); // 1.98
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
    movePointer(-1.5, 1.5); // 2.12
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
}

TEST_F(MouseTrackerTest, SlowDriftCountsAsStill) {
    EXPECT_FALSE(tracker.hasBeenStationary(10.0));
    for (int poll = 1; poll < 125; ++poll) {
        wait();
        movePointer(1.0);
        ASSERT_FALSE(tracker.hasBeenStationary(10.0)) << poll;
    }
    wait();
    movePointer(1.0);
    EXPECT_TRUE(tracker.hasBeenStationary(10.0));
}

TEST_F(MouseTrackerTest, MovementThatComesBackBetweenQuestionsIsNotSeen) {
    EXPECT_FALSE(tracker.hasBeenStationary(0.08));
    movePointer(100.0);
    wait();
    movePointer(-100.0);
    EXPECT_TRUE(tracker.hasBeenStationary(0.08));
}

TEST_F(MouseTrackerTest, UnknownPositionIsNeverStill) {
    platform.pointer.reset();
    for (int poll = 0; poll < 50; ++poll) {
        ASSERT_FALSE(tracker.hasBeenStationary(0.0));
        wait();
    }
    platform.pointer = platform::Point{};
    EXPECT_FALSE(tracker.hasBeenStationary(0.0)) << "the first known position counts as a first question";
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
}

TEST_F(MouseTrackerTest, DesktopThatDoesNotTellThePositionIsNeverStill) {
    const platform::Desktop telling = platform.desktop.get();
    platform.desktop.set({});
    EXPECT_EQ(tracker.currentPosition(), std::nullopt);
    for (int poll = 0; poll < 50; ++poll) {
        ASSERT_FALSE(tracker.hasBeenStationary(0.0));
        wait();
    }
    platform.desktop.set(telling);
    EXPECT_FALSE(tracker.hasBeenStationary(0.0)) << "the first known position counts as a first question";
    EXPECT_TRUE(tracker.hasBeenStationary(0.0));
}

TEST_F(MouseTrackerTest, UnknownPositionInBetweenStartsThePeriodAnew) {
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(2.0);
    const auto known = platform.pointer;
    platform.pointer.reset();
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.pointer = known;
    EXPECT_FALSE(tracker.hasBeenStationary(1.0));
    platform.loop.advance(1.0);
    EXPECT_TRUE(tracker.hasBeenStationary(1.0));
}

TEST_F(MouseTrackerTest, DurationThatIsNoNumberIsNeverReached) {
    EXPECT_FALSE(tracker.hasBeenStationary(0.0));
    platform.loop.advance(100.0);
    EXPECT_FALSE(tracker.hasBeenStationary(std::numeric_limits<double>::quiet_NaN()));
}

} // namespace velloran
