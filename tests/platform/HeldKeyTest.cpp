#include "platform/HeldKey.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

namespace velloran::platform {

class HeldKeyTest : public testing::Test {
protected:
    /// How many of the presses are news that come so far apart, the first one at once.
    int news(int presses, double pause) {
        int count = 0;
        for (int i = 0; i < presses; ++i) {
            if (i > 0) {
                loop.advance(pause);
            }
            count += key.press() ? 1 : 0;
        }
        return count;
    }

    /// How many are news of a key that is held, on a keyboard that repeats it after `delay` seconds 25 times a second.
    int newsOfHeld(double delay) {
        int count = key.press() ? 1 : 0;
        loop.advance(delay);
        return count + news(50, 0.04);
    }

    fakes::VirtualLoop loop;
    HeldKey key{loop};
};

TEST_F(HeldKeyTest, EveryPressCountsWhereReleasesAreTold) {
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(key.press());
        key.release();
        loop.advance(0.01);
    }
}

TEST_F(HeldKeyTest, AHeldKeyCountsOnce) {
    EXPECT_EQ(newsOfHeld(0.66), 1);
    loop.advance(1.01);
    EXPECT_EQ(newsOfHeld(0.98), 1);
}

TEST_F(HeldKeyTest, WhereReleasesAreToldTheKeyboardMayTakeItsTime) {
    EXPECT_TRUE(key.press());
    key.release();
    EXPECT_EQ(newsOfHeld(2.9), 1);
    key.release();
    EXPECT_EQ(news(10, 0.9), 1) << "and repeat slowly";
}

TEST_F(HeldKeyTest, WhoeverHammersIsHeardWhereNoReleaseIsTold) {
    EXPECT_TRUE(key.press());
    for (int i = 0; i < 20; ++i) {
        EXPECT_GE(news(2, 0.25), 1) << "at the latest with every second press";
        loop.advance(0.25);
    }
    loop.advance(1.01);
    EXPECT_EQ(news(10, 1.01), 10);
}

TEST_F(HeldKeyTest, ALostReleaseCostsOnePressAtMost) {
    EXPECT_TRUE(key.press());
    key.release();
    EXPECT_TRUE(key.press());
    loop.advance(0.25);
    EXPECT_FALSE(key.press()) << "it may be held";
    key.release();
    EXPECT_TRUE(key.press());
    loop.advance(3.01);
    EXPECT_TRUE(key.press());
}

TEST_F(HeldKeyTest, WhatIsForgottenIsNoRelease) {
    EXPECT_TRUE(key.press());
    key.forget();
    EXPECT_TRUE(key.press());
    loop.advance(1.01);
    EXPECT_TRUE(key.press());
}

} // namespace velloran::platform
