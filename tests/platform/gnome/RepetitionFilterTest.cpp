#include "platform/gnome/RepetitionFilter.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

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
    RepetitionFilter filter{loop, [this] { ++presses; }};
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
        RepetitionFilter ending(loop, [this] { ++presses; });
        ending.hear();
        loop.advance(0.3);
        ending.hear();
    }
    loop.advance(1);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(loop.pendingCalls(), 0U);
}

} // namespace
} // namespace velloran::platform::gnome
