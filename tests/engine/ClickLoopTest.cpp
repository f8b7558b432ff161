#include "engine/StoreTest.h"

#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

class ClickLoopTest : public StoreTest {
protected:
    void run(const AutoClickerConfig& config) {
        open(config);
        platform.loop.runDue();
        store->start();
    }

    static AutoClickerConfig delayed(double delay) {
        AutoClickerConfig config = unlimited();
        config.startDelaySeconds = delay;
        return config;
    }
};

} // namespace

TEST_F(ClickLoopTest, WithoutADelayItRunsAtOnceWithoutACountdown) {
    run(unlimited());
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
    platform.loop.runDue();
    expectClicks({0.0});
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
}

TEST_F(ClickLoopTest, CountdownFallsToNothingInTenths) {
    run(delayed(2.5));
    std::vector<double> shown;
    const Subscription watching = store->runtime().stream().subscribe([&](const AutoClickerRuntime& record) {
        if (record.countdownRemaining) {
            EXPECT_EQ(record.status, ClickerStatus::delayed);
            shown.push_back(*record.countdownRemaining);
        }
    });
    advance(2.4999);
    EXPECT_EQ(status(), ClickerStatus::delayed);
    ASSERT_EQ(shown.size(), 26U) << "once by the start and then every tenth of a second";
    EXPECT_EQ(shown[0], 2.5);
    for (std::size_t step = 1; step < shown.size(); ++step) {
        EXPECT_NEAR(shown[step], 2.5 - 0.1 * static_cast<double>(step - 1), 1e-6);
    }
    advance(0.0001);
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().countdownRemaining, std::nullopt);
    expectClicks({2.5});
}

TEST_F(ClickLoopTest, CountdownMessagesCountDown) {
    run(delayed(2.0));
    std::vector<std::string> messages;
    const Subscription watching = store->runtime()
                                      .stream()
                                      .map([](const AutoClickerRuntime& record) { return record.message(); })
                                      .removeDuplicates()
                                      .subscribe([&](const std::string& message) { messages.push_back(message); });
    advance(2.0);
    EXPECT_EQ(messages, (Journal{"Starting in 2 seconds", "Starting in 1 second", "Delayed start active",
                                 "0 clicks completed", "1 click completed"}));
}

TEST_F(ClickLoopTest, DelayThatIsNoMultipleOfTheStepEndsAtTheNextStep) {
    run(delayed(0.25));
    advance(0.299);
    EXPECT_EQ(status(), ClickerStatus::delayed);
    EXPECT_NEAR(*runtime().countdownRemaining, 0.05, 1e-6);
    advance(0.001);
    expectClicks({0.3});
}

TEST_F(ClickLoopTest, CountedRunPostsExactlyThatManyAndCompletesRightAfterTheLast) {
    run(counted(3));
    advance(7.0);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_EQ(runtime().clicksRemaining, 1);
    EXPECT_EQ(runtime().message(), "2 / 3 clicks completed");
    EXPECT_NEAR(*runtime().nextClickAt - platform.loop.now(), 7.0, 1e-6);
    advance(7.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksCompleted, 3);
    EXPECT_EQ(runtime().clicksRemaining, 0);
    EXPECT_EQ(runtime().nextClickAt, std::nullopt);
    EXPECT_EQ(runtime().message(), "Completed — reached 3 clicks");
    advance(600.0);
    expectClicks({0.0, 7.0, 14.0});
    EXPECT_EQ(platform.postedEvents, 6U);
    EXPECT_EQ(platform.pairedClicks, 3U);
}

TEST_F(ClickLoopTest, CompletedRunCanBeStartedAfresh) {
    run(counted(2, 1.0));
    advance(10.0);
    store->toggleStartStop();
    EXPECT_EQ(status(), ClickerStatus::running);
    EXPECT_EQ(runtime().clicksCompleted, 0);
    EXPECT_EQ(runtime().clicksRemaining, 2);
    advance(10.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    expectClicks({0.0, 1.0, 10.0, 11.0});
}

TEST_F(ClickLoopTest, CountsAndRemainderMoveTogetherStepByStep) {
    run(counted(2));
    std::vector<std::pair<std::int64_t, std::optional<std::int64_t>>> seen;
    const Subscription watching = store->runtime().stream().subscribe([&](const AutoClickerRuntime& record) {
        if (seen.empty() || seen.back() != std::pair(record.clicksCompleted, record.clicksRemaining)) {
            seen.emplace_back(record.clicksCompleted, record.clicksRemaining);
        }
    });
    advance(7.0);
    const decltype(seen) expected{{0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}};
    EXPECT_EQ(seen, expected) << "the count goes first, then what remains of it";
}

TEST_F(ClickLoopTest, LastClickIsFollowedByCompletionWithoutAWait) {
    run(counted(1, 3600.0));
    platform.loop.runDue();
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(platform.loop.elapsed(), 0U);
}

TEST_F(ClickLoopTest, NextClickIsShownOnlyOnceItIsWaitedFor) {
    run(unlimited(2.0));
    EXPECT_EQ(runtime().nextClickAt, std::nullopt);
    const Date begin = platform.loop.now();
    platform.loop.runDue();
    EXPECT_EQ(runtime().nextClickAt, begin + 2.0);
    advance(2.0);
    EXPECT_EQ(runtime().nextClickAt, begin + 4.0);
}

TEST_F(ClickLoopTest, NextClickStaysAsItWasWhereThereIsNothingToWaitFor) {
    run(counted(4, 2.0));
    advance(1.0);
    const auto before = runtime().nextClickAt;
    platform.loop.shiftWallClock(3600.0);
    std::vector<std::optional<Date>> atCounts;
    const Subscription watching =
        store->runtime().observeWillChange([&] { atCounts.push_back(runtime().nextClickAt); });
    advance(1.0);
    expectClicks({0.0, 2.0, 2.0});
    ASSERT_GE(atCounts.size(), 5U);
    for (std::size_t at = 0; at < 5; ++at) {
        EXPECT_EQ(atCounts[at], before) << "two clicks without a wait in between change only the counts";
    }
    EXPECT_NE(runtime().nextClickAt, before);
}

TEST_F(ClickLoopTest, CadenceGoesByTheScheduleAndDoesNotDrift) {
    run(unlimited(0.1));
    std::vector<double> expected;
    for (int click = 0; click <= 100; ++click) {
        expected.push_back(0.1 * click);
    }
    advance(10.05);
    ASSERT_EQ(clicks().size(), expected.size());
    for (std::size_t click = 0; click < expected.size(); ++click) {
        EXPECT_NEAR(clicks()[click], expected[click], 1e-5);
    }
}

TEST_F(ClickLoopTest, EditsDuringTheRunDoNotChangeIt) {
    run(counted(4, 2.0));
    advance(1.0);
    store->config.modify([](AutoClickerConfig& config) {
        config.clickIntervalSeconds = 0.5;
        config.mouseButton = MouseButton::right;
        config.maxClicks = 1;
        config.stopMode = StopMode::manual;
        config.requireStationaryMouse = true;
        config.playClickSound = true;
    });
    advance(30.0);
    expectClicks({0.0, 2.0, 4.0, 6.0});
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(platform.count("post 3"), 0);
    EXPECT_EQ(platform.count("play sound"), 0);
}

TEST_F(ClickLoopTest, EditsBetweenStartAndTheFirstStepDoNotChangeItEither) {
    run(counted(2, 2.0));
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 0.5; });
    advance(30.0);
    expectClicks({0.0, 2.0});
}

TEST_F(ClickLoopTest, EditsTakeEffectAtTheNextStart) {
    run(unlimited(2.0));
    advance(1.0);
    store->config.modify([](AutoClickerConfig& config) { config.clickIntervalSeconds = 0.5; });
    store->start();
    advance(1.0);
    expectClicks({0.0, 1.0, 1.5, 2.0});
}

TEST_F(ClickLoopTest, ConfiguredButtonIsClicked) {
    for (const auto& [button, press, release] :
         {std::tuple{MouseButton::left, "post 1 button 0", "post 2 button 0"},
          std::tuple{MouseButton::right, "post 3 button 1", "post 4 button 1"},
          std::tuple{MouseButton::middle, "post 25 button 2", "post 26 button 2"}}) {
        AutoClickerConfig config = counted(1);
        config.mouseButton = button;
        run(config);
        platform.loop.runDue();
        EXPECT_EQ(platform.count(press), 1);
        EXPECT_EQ(platform.count(release), 1);
        EXPECT_EQ(platform.count("post "), 2);
        store.reset();
    }
}

TEST_F(ClickLoopTest, PermissionIsAskedAboutOnlyAtTheStart) {
    run(unlimited(1.0));
    platform.journal.clear();
    platform.isTrusted = false;
    advance(5.5);
    EXPECT_EQ(platform.count("ask trust"), 0);
    EXPECT_EQ(clicks().size(), 6U);
}

TEST_F(ClickLoopTest, ClickThatCannotBeMadeStillCounts) {
    run(counted(2, 1.0));
    platform.unmakeableEvents = {platform::MouseEventType::leftMouseDown, platform::MouseEventType::leftMouseUp};
    advance(1.0);
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksCompleted, 2);
    EXPECT_EQ(platform.postedEvents, 0U);
}

TEST_F(ClickLoopTest, CountThatIsGoneWhenTheLoopBeginsNeverStopsIt) {
    open(counted(2, 1.0));
    // The one moment between the check and the copy.
    const Subscription watching =
        store->hasAccessibilityPermission().stream().subscribe([this, first = true](bool) mutable {
            if (!first) {
                store->config.modify([](AutoClickerConfig& config) { config.maxClicks.reset(); });
            }
            first = false;
        });
    store->start();
    advance(5.5);
    EXPECT_EQ(runtime().clicksCompleted, 6);
    EXPECT_EQ(runtime().clicksRemaining, std::nullopt);
    EXPECT_EQ(status(), ClickerStatus::running);
}

TEST_F(ClickLoopTest, CompletionSaysThatNothingRemains) {
    open(counted(2, 1.0));
    // A count that no start would accept, put in between the check and the copy.
    const Subscription watching =
        store->hasAccessibilityPermission().stream().subscribe([this, first = true](bool) mutable {
            if (!first) {
                store->config.modify([](AutoClickerConfig& config) { config.maxClicks = -3; });
            }
            first = false;
        });
    store->start();
    EXPECT_EQ(runtime().clicksRemaining, -3);
    platform.loop.runDue();
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksRemaining, 0);
    expectClicks({});
}

TEST_F(ClickLoopTest, IntervalThatIsNoNumberIsNotWaitedFor) {
    AutoClickerConfig config = counted(3);
    open(config);
    config.clickIntervalSeconds = std::numeric_limits<double>::quiet_NaN();
    store->config.set(config);
    store->start();
    platform.loop.runDue();
    EXPECT_EQ(status(), ClickerStatus::completed);
    expectClicks({0.0, 0.0, 0.0});
}

} // namespace velloran
