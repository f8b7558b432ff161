#include "platform/wayland/VirtualPointer.h"

#include "async/SerialQueue.h"
#include "harness/observer/ClickReport.h"
#include "platform/wayland/LoopTest.h"
#include "platform/wayland/Sway.h"
#include "platform/wayland/Witness.h"
#include "platform/wayland/clicks.h"

#include <chrono>
#include <future>
#include <iostream>
#include <memory>
#include <string>

namespace velloran::tests {

using observer::ClickReport;
using platform::wayland::VirtualPointer;
using Offer = VirtualPointer::Offer;

class SwayClicks : public LoopTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(sway.isUp()) << "sway must be installed";
        openWindow();
        pointer = std::make_unique<VirtualPointer>(loop, sway.display());
        ASSERT_TRUE(until([this] { return pointer->offer() == Offer::offered; }));
    }

    void openWindow() {
        witness = std::make_unique<Witness>(sway);
        ASSERT_TRUE(witness->isReady());
    }

    /// Clicks that often, at that interval in seconds, on a thread of the clicks' own. `meanwhile` is told before each
    /// click how many there have been.
    void clickAtInterval(int number, double interval, const ButtonCase& button = left,
                         const std::function<void(int)>& meanwhile = {}) {
        auto queue = loop.makeSerialQueue("clicks");
        int clicks = 0;
        const auto start = std::chrono::steady_clock::now();
        ScheduledCall next;
        const std::function<void()> clickOnce = [&] {
            if (meanwhile) {
                meanwhile(clicks);
            }
            queue->async([this, &button] { click(pointer->pointerEvents(), button); });
            ++clicks;
            const auto passed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            next =
                ScheduledCall(loop, loop.callAfter(nanoseconds(std::max(clicks * interval - passed, 0.0)), clickOnce));
        };
        clickOnce();
        EXPECT_TRUE(until([&] { return clicks >= number; }, number * interval + patience));
        next.cancel();
        queue.reset();
    }

    bool untilReleases(std::size_t number) {
        return until([this, number] { return witness->releases() >= number; });
    }

    /// What the other client saw since the last time.
    ClickReport seen(double interval = 0.0) { return observer::summarize(witness->report(), interval); }

    Sway sway;
    std::unique_ptr<Witness> witness;
    std::unique_ptr<VirtualPointer> pointer;
};

TEST_F(SwayClicks, AHundredOfEachButtonAreSeenInPairs) {
    constexpr double interval = 0.01;
    std::size_t releases = 0;
    for (const ButtonCase& button : {left, right, middle}) {
        clickAtInterval(100, interval, button);
        releases += 100;
        ASSERT_TRUE(untilReleases(releases));
        const ClickReport report = seen(interval);
        EXPECT_EQ(report.presses, 100U);
        EXPECT_EQ(report.releases, 100U);
        EXPECT_TRUE(report.areInPairs);
        EXPECT_EQ(report.pressesOfButton, (std::map<unsigned, std::size_t>{{button.number, 100U}}));
    }
}

TEST_F(SwayClicks, AThousandAreAThousand) {
    constexpr double interval = 0.01;
    clickAtInterval(1000, interval);
    ASSERT_TRUE(untilReleases(1000));
    const ClickReport report = seen(interval);
    EXPECT_EQ(report.presses, 1000U);
    EXPECT_EQ(report.releases, 1000U);
    EXPECT_TRUE(report.areInPairs);
    std::cout << "1000 clicks at 10 ms: " << observer::toJson(report) << '\n';
}

TEST_F(SwayClicks, AThousandAtOnceAreAThousand) {
    const auto queue = loop.makeSerialQueue("clicks");
    for (int i = 0; i < 1000; ++i) {
        queue->async([this, i] { click(pointer->pointerEvents(), i % 2 == 0 ? left : right); });
    }
    ASSERT_TRUE(untilReleases(1000));
    const ClickReport report = seen();
    EXPECT_EQ(report.presses, 1000U);
    EXPECT_TRUE(report.areInPairs);
    EXPECT_EQ(report.pressesOfButton, (std::map<unsigned, std::size_t>{{left.number, 500U}, {right.number, 500U}}));
}

TEST_F(SwayClicks, OutputsThatComeAndGoTakeNone) {
    clickAtInterval(200, 0.01, left, [this](int clicks) {
        if (clicks == 50) {
            EXPECT_TRUE(sway.command("create_output"));
            EXPECT_TRUE(sway.command("output HEADLESS-2 resolution 640x480"));
        } else if (clicks == 150) {
            EXPECT_TRUE(sway.command("output HEADLESS-2 disable"));
        }
    });
    ASSERT_TRUE(untilReleases(200));
    const ClickReport report = seen();
    EXPECT_EQ(report.presses, 200U);
    EXPECT_TRUE(report.areInPairs);
    EXPECT_TRUE(pointer->isTrusted());
}

TEST_F(SwayClicks, WaitForNoCompositorAndNoneIsLost) {
    constexpr std::size_t clicks = 1000;
    sway.pause();
    auto clicked = std::async(std::launch::async, [this] {
        for (std::size_t i = 0; i < clicks; ++i) {
            click(pointer->pointerEvents());
        }
    });
    const bool isDone = clicked.wait_for(std::chrono::duration<double>(patience)) == std::future_status::ready;
    EXPECT_TRUE(pointer->isTrusted());
    sway.goOn();
    EXPECT_TRUE(isDone);
    ASSERT_TRUE(untilReleases(clicks));
    const ClickReport report = seen();
    EXPECT_EQ(report.presses, clicks);
    EXPECT_TRUE(report.areInPairs);
}

TEST_F(SwayClicks, AreNotMissedByACompositorThatEndsWhileItIsHeldStill) {
    sway.pause();
    for (int i = 0; i < 1000; ++i) {
        click(pointer->pointerEvents());
    }
    sway.crash();
    ASSERT_TRUE(until([this] { return pointer->offer() == Offer::missing; }));
    EXPECT_FALSE(pointer->isTrusted());
}

TEST_F(SwayClicks, AKilledClickerLeavesNoButtonDown) {
    constexpr int kills = 20;
    std::size_t before = 0;
    for (int i = 0; i < kills; ++i) {
        ChildProcess clicker({CLICK_LOOP, sway.display()});
        ASSERT_EQ(clicker.readLine(), "clicking");
        // Any moment: within a burst, within a click, or between.
        ASSERT_TRUE(untilReleases(before + static_cast<std::size_t>(37 * i)));
        clicker.sendSignal(SIGKILL);
        ASSERT_EQ(clicker.wait(), -SIGKILL);
        const ClickReport report = seen();
        EXPECT_EQ(report.presses, report.releases) << "after kill " << i;
        EXPECT_TRUE(report.areInPairs) << "after kill " << i;
        before = witness->releases();
    }
    EXPECT_GT(before, 20U);
}

TEST_F(SwayClicks, ACompositorThatIsKilledInTheMiddleIsToldAndFollowed) {
    int losses = 0;
    pointer->onChanged([&] { losses += pointer->isTrusted() ? 0 : 1; });
    clickAtInterval(100, 0.01, left, [this](int clicks) {
        if (clicks == 50) {
            sway.crash();
        }
    });
    ASSERT_TRUE(until([&losses] { return losses > 0; }));
    EXPECT_FALSE(pointer->isTrusted());
    EXPECT_EQ(losses, 1);

    witness.reset();
    sway.start();
    ASSERT_TRUE(sway.isUp());
    openWindow();
    ASSERT_TRUE(until([this] { return pointer->isTrusted(); }));
    clickAtInterval(20, 0.01);
    ASSERT_TRUE(untilReleases(20));
    const ClickReport report = seen();
    EXPECT_EQ(report.presses, 20U);
    EXPECT_TRUE(report.areInPairs);
}

} // namespace velloran::tests
