#include "platform/gnome/RepetitionFilter.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace velloran::platform::gnome {
namespace {

class RepetitionFilterTest : public testing::Test {
protected:
    /// The desktop tells of it that long after the last one.
    void hearAfter(double seconds) {
        loop.advance(seconds);
        filter.hear();
    }

    /// As a keyboard does it: the first, and after a while one after the other.
    void hold(int repetitions, double delay = 0.5, double interval = 0.03) {
        filter.hear();
        repeat(repetitions, delay, interval);
    }

    void repeat(int repetitions, double delay = 0.5, double interval = 0.03) {
        for (int i = 0; i < repetitions; ++i) {
            hearAfter(i == 0 ? delay : interval);
        }
    }

    fakes::VirtualLoop loop;
    int presses = 0;
    RepetitionFilter filter{loop, [] { return false; }, [this] { ++presses; }};
};

/// Where each press begins a run or ends it, a turn later.
class RepetitionFilterRunTest : public testing::Test {
protected:
    /// What becomes of it, in turns of 10 ms, when the desktop tells of these moments, in seconds.
    std::vector<double> toggledAt(std::vector<double> told) {
        std::vector<double> toggled;
        std::vector<double> pressed;
        double now = 0;
        RepetitionFilter filter(
            loop, [this] { return isRunning; }, [&] { pressed.push_back(now); });
        for (int turn = 0; turn < 1000; ++turn) {
            now = turn / 100.0;
            for (const double moment : std::exchange(pressed, {})) {
                toggled.push_back(moment);
                isRunning = !isRunning;
            }
            while (!told.empty() && told.front() < now + 0.005) {
                told.erase(told.begin());
                filter.hear();
            }
            loop.advance(0.01);
        }
        return toggled;
    }

    fakes::VirtualLoop loop;
    bool isRunning = false;
};

TEST_F(RepetitionFilterTest, TheFirstPressCountsAtOnce) {
    filter.hear();
    EXPECT_EQ(presses, 1);
    loop.advance(10);
    EXPECT_EQ(presses, 1);
    filter.hear();
    EXPECT_EQ(presses, 2) << "the one before is long ago";
}

TEST_F(RepetitionFilterTest, AHeldKeyCountsOnce) {
    for (const auto& [delay, interval] :
         std::vector<std::pair<double, double>>{{0.5, 0.03}, {0.1, 0.01}, {2.0, 0.11}, {0.66, 0.04}}) {
        presses = 0;
        hold(48, delay, interval);
        loop.advance(10);
        EXPECT_EQ(presses, 1) << delay << " and then " << interval;
    }
}

TEST_F(RepetitionFilterTest, ABusyDesktopTellsUnevenlyOfAHeldKey) {
    hold(5);
    for (const double pause : {0.0, 0.3, 0.001, 0.49, 0.001, 0.2}) {
        hearAfter(pause);
    }
    loop.advance(10);
    EXPECT_EQ(presses, 1);
}

TEST_F(RepetitionFilterTest, PressesThatStandAloneAllCount) {
    filter.hear();
    for (const double pause : {0.25, 0.4, 0.5, 0.6, 1.0, 2.5}) {
        const int before = presses;
        hearAfter(pause);
        EXPECT_EQ(presses, before) << "it may be a repetition, " << pause;
        loop.advance(0.2);
        EXPECT_EQ(presses, before + 1) << pause;
    }
}

TEST_F(RepetitionFilterTest, APressSoonAfterAHeldKeyCounts) {
    hold(20);
    hearAfter(0.6);
    loop.advance(0.2);
    EXPECT_EQ(presses, 2);
    repeat(20, 0.3);
    loop.advance(10);
    EXPECT_EQ(presses, 2) << "it is held as well";
}

TEST_F(RepetitionFilterTest, AHeldKeyAfterASinglePressCountsOnce) {
    filter.hear();
    loop.advance(4);
    hold(30);
    loop.advance(10);
    EXPECT_EQ(presses, 2);
}

TEST_F(RepetitionFilterTest, NothingIsLeftOfOneThatHasGone) {
    {
        RepetitionFilter ending(
            loop, [] { return false; }, [this] { ++presses; });
        ending.hear();
        loop.advance(0.3);
        ending.hear();
    }
    loop.advance(1);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

TEST_F(RepetitionFilterRunTest, AStopIsNeverLate) {
    for (const double pause : {0.12, 0.2, 0.5, 0.66, 1.0, 2.9, 3.1}) {
        isRunning = false;
        EXPECT_EQ(toggledAt({0, pause}), (std::vector{0.0, pause})) << "started and stopped";
        loop.advance(10);
        isRunning = true;
        EXPECT_EQ(toggledAt({pause}), std::vector{pause}) << "started by something else";
        loop.advance(10);
    }
}

TEST_F(RepetitionFilterRunTest, WhoeverHammersStops) {
    EXPECT_EQ(toggledAt({0, 0.15, 0.3, 0.45, 0.6, 0.75}), (std::vector{0.0, 0.15}));
    EXPECT_FALSE(isRunning);
    loop.advance(10);
    isRunning = true;
    EXPECT_EQ(toggledAt({0, 0.15, 0.3, 0.45}), std::vector{0.0});
    EXPECT_FALSE(isRunning);
}

TEST_F(RepetitionFilterRunTest, ARunThatBeginsInTheMiddleOfRepetitionsIsStopped) {
    int presses = 0;
    RepetitionFilter filter(
        loop, [this] { return isRunning; }, [&] { ++presses; });
    for (const double pause : {0.0, 0.5, 0.03, 0.03}) {
        loop.advance(pause);
        filter.hear();
    }
    EXPECT_EQ(presses, 1);
    isRunning = true;
    loop.advance(0.03);
    filter.hear();
    EXPECT_EQ(presses, 2);
}

TEST_F(RepetitionFilterRunTest, AHeldKeyBeginsNothingAfterWhatItEnded) {
    std::vector<double> told{0};
    for (int i = 0; i < 60; ++i) {
        told.push_back(0.5 + 0.03 * i);
    }
    EXPECT_EQ(toggledAt(told), (std::vector{0.0, 0.5})) << "its first repetition may be a press";
    EXPECT_FALSE(isRunning);
    loop.advance(10);
    isRunning = true;
    EXPECT_EQ(toggledAt(told), std::vector{0.0});
    EXPECT_FALSE(isRunning);
    loop.advance(10);
    told.resize(3);
    EXPECT_EQ(toggledAt(told), (std::vector{0.0, 0.5})) << "let go right after its second";
}

TEST_F(RepetitionFilterRunTest, WhatIsToldAtOnceStopsOnce) {
    isRunning = true;
    EXPECT_EQ(toggledAt({1, 1, 1.001, 1.002}), std::vector{1.0});
    EXPECT_FALSE(isRunning);
}

TEST_F(RepetitionFilterRunTest, AStartMayBeWaitedFor) {
    EXPECT_EQ(toggledAt({0, 0.5, 2, 4.5}).size(), 4U);
    EXPECT_FALSE(isRunning);
    loop.advance(10);
    isRunning = true;
    EXPECT_EQ(toggledAt({0, 0.3}).size(), 2U);
    EXPECT_TRUE(isRunning);
}

} // namespace
} // namespace velloran::platform::gnome
