#include "donation/DonationBench.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace velloran {

TEST_F(DonationManagerTest, Intervals) {
    const std::vector<double> expected{60, 60, 60, 300, 300, 300, 600, 1800, 1800};
    for (std::size_t n = 0; n < expected.size(); ++n) {
        EXPECT_EQ(DonationManager::intervalForReminder(static_cast<std::int64_t>(n)), expected[n]) << n;
    }
    EXPECT_EQ(DonationManager::intervalForReminder(1'000'000), 1800.0);
    EXPECT_EQ(DonationManager::intervalForReminder(std::numeric_limits<std::int64_t>::max()), 1800.0);
    EXPECT_EQ(DonationManager::intervalForReminder(-1), 1800.0);
    EXPECT_EQ(DonationManager::intervalForReminder(std::numeric_limits<std::int64_t>::min()), 1800.0);
}

TEST_F(DonationManagerTest, FirstStartSetsTheScheduleUp) {
    open();
    EXPECT_EQ(preferences.written, (std::vector<std::string>{firstLaunchKey, nextReminderKey, remindersShownKey}));
    EXPECT_EQ(preferences.date(firstLaunchKey), platform.loop.now());
    EXPECT_EQ(untilNext(), 60.0);
    EXPECT_EQ(preferences.integer(remindersShownKey), 0);
    EXPECT_FALSE(preferences.holds(donatedKey));
    EXPECT_FALSE(manager->hasDonated());
    EXPECT_FALSE(isVisible());
}

TEST_F(DonationManagerTest, FirstPromptComesAtTheFirstCheck) {
    open();
    platform.loop.advance(59.999);
    EXPECT_FALSE(isVisible());
    platform.loop.advance(0.001);
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, DueReminderShowsAtOnceOnStart) {
    open();
    manager.reset();
    platform.loop.advance(60.0);
    open();
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, ThreeSnoozesWaitSixtySixtyThreeHundred) {
    open();
    EXPECT_EQ(secondsUntilVisible(100), 60);
    for (const double interval : {60.0, 60.0, 300.0}) {
        manager->snooze();
        EXPECT_FALSE(isVisible());
        EXPECT_EQ(untilNext(), interval);
        EXPECT_EQ(secondsUntilVisible(1000), static_cast<int>(interval));
    }
    EXPECT_EQ(preferences.integer(remindersShownKey), 3);
}

TEST_F(DonationManagerTest, SnoozesGrowToHalfAnHourAndStayThere) {
    open();
    for (const double interval : {60.0, 60.0, 300.0, 300.0, 300.0, 600.0, 1800.0, 1800.0, 1800.0}) {
        manager->snooze();
        EXPECT_EQ(untilNext(), interval);
    }
    EXPECT_EQ(preferences.integer(remindersShownKey), 9);
}

TEST_F(DonationManagerTest, AlreadyDonatedMovesToTheSlowestStep) {
    open();
    platform.loop.advance(60.0);
    manager->acknowledgeAlreadyDonated();
    EXPECT_FALSE(isVisible());
    EXPECT_FALSE(manager->hasDonated());
    EXPECT_FALSE(preferences.holds(donatedKey));
    EXPECT_EQ(preferences.integer(remindersShownKey), 7);
    EXPECT_EQ(untilNext(), 1800.0);
    EXPECT_EQ(secondsUntilVisible(4000), 1800);
    for (int again = 0; again < 3; ++again) {
        manager->snooze();
        EXPECT_EQ(untilNext(), 1800.0);
    }
    EXPECT_EQ(preferences.integer(remindersShownKey), 10);
}

TEST_F(DonationManagerTest, DonationEndsTheRemindersForGood) {
    open();
    platform.loop.advance(60.0);
    manager->markDonated();
    EXPECT_FALSE(isVisible());
    EXPECT_TRUE(manager->hasDonated());
    EXPECT_EQ(preferences.truth(donatedKey), true);
    EXPECT_FALSE(preferences.holds(nextReminderKey));
    platform.loop.advance(86400.0);
    EXPECT_FALSE(isVisible());
    manager.reset();
    open();
    platform.loop.advance(86400.0);
    EXPECT_FALSE(isVisible());
    EXPECT_FALSE(preferences.holds(nextReminderKey));
}

TEST_F(DonationManagerTest, DonationOutweighsADateThatIsThereAllTheSame) {
    open();
    manager->markDonated();
    preferences.values[nextReminderKey] = platform.loop.now();
    manager->evaluate();
    EXPECT_FALSE(isVisible());
}

TEST_F(DonationManagerTest, EvaluateNeverHides) {
    open();
    manager->isPromptVisible.set(true);
    manager->evaluate();
    EXPECT_TRUE(isVisible()) << "not due, and still not hidden";
    manager->markDonated();
    manager->isPromptVisible.set(true);
    manager->evaluate();
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, DueMomentItselfIsDue) {
    preferences.values[firstLaunchKey] = platform.loop.now();
    preferences.values[nextReminderKey] = platform.loop.now();
    open();
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, ClosedWithoutAnAnswerItComesBackAtTheNextCheck) {
    open();
    platform.loop.advance(60.0);
    manager->isPromptVisible.set(false);
    EXPECT_EQ(secondsUntilVisible(100), 60);
}

TEST_F(DonationManagerTest, ClockSetBackWaitsForTheStoredDate) {
    open();
    platform.loop.shiftWallClock(-3600.0);
    EXPECT_EQ(secondsUntilVisible(5000), 3660);
}

TEST_F(DonationManagerTest, ClockSetForwardIsDueAtTheNextCheck) {
    open();
    platform.loop.advance(1.0);
    manager->acknowledgeAlreadyDonated();
    platform.loop.shiftWallClock(86400.0);
    EXPECT_EQ(secondsUntilVisible(200), 59);
}

TEST_F(DonationManagerTest, LinkOpensInTheBrowserAndChangesNothing) {
    open();
    platform.loop.advance(60.0);
    const auto before = preferences.values;
    manager->openDonationLink();
    EXPECT_EQ(platform.journal, std::vector<std::string>{"open url " + DonationManager::stripeURL().text()});
    EXPECT_EQ(preferences.values, before);
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, TimerOnlySchedulesTheCheck) {
    open();
    platform.loop.advance(59.0);
    ASSERT_TRUE(platform.loop.runNext()) << "the timer";
    EXPECT_EQ(platform.loop.elapsed(), 60 * nanosecondsPerSecond);
    EXPECT_FALSE(isVisible());
    ASSERT_TRUE(platform.loop.runNext()) << "the check";
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, EndStopsTheTimer) {
    open();
    manager.reset();
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(DonationManagerTest, CheckUnderWayFindsTheManagerGone) {
    open();
    platform.loop.advance(59.0);
    ASSERT_TRUE(platform.loop.runNext());
    const int before = preferences.writes;
    manager.reset();
    EXPECT_EQ(platform.loop.pendingCalls(), 1U) << "the check that the timer has posted";
    platform.loop.advance(600.0);
    EXPECT_EQ(preferences.writes, before);
    EXPECT_EQ(platform.loop.pendingCalls(), 0U);
}

TEST_F(DonationManagerTest, WeekOfRemindersPutOffAtOnce) {
    open();
    constexpr int secondsInAWeek = 7 * 24 * 3600;
    std::vector<std::uint64_t> shownAt;
    const Subscription watching = manager->isPromptVisible.stream().subscribe([this, &shownAt](bool visible) {
        if (visible) {
            shownAt.push_back(platform.loop.elapsed() / nanosecondsPerSecond);
            platform.loop.post([this] { manager->snooze(); });
        }
    });
    platform.loop.advance(secondsInAWeek);

    // Everything falls on whole minutes, so the checks add nothing to the intervals.
    std::vector<std::uint64_t> expected{60};
    for (std::int64_t n = 1; expected.back() <= secondsInAWeek; ++n) {
        expected.push_back(expected.back() + static_cast<std::uint64_t>(DonationManager::intervalForReminder(n)));
    }
    expected.pop_back();
    EXPECT_EQ(shownAt, expected);
    EXPECT_EQ(preferences.integer(remindersShownKey), static_cast<std::int64_t>(expected.size()));
    EXPECT_GT(expected.size(), 330U);
}

TEST_F(DonationManagerTest, WeekWithoutAnAnswerKeepsTheOnePrompt) {
    open();
    int shown = 0;
    platform.loop.advance(60.0);
    const Subscription watching = manager->isPromptVisible.stream().removeDuplicates().subscribe(
        [&shown](bool visible) { shown += visible ? 1 : 0; });
    platform.loop.advance(7.0 * 24 * 3600);
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(preferences.integer(remindersShownKey), 0);
}

namespace {

using DonationManagerDeathTest = DonationManagerTest;

} // namespace

TEST_F(DonationManagerDeathTest, CounterThatOverflowsIsFatal) {
    open();
    preferences.values[remindersShownKey] = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH(manager->snooze(), "^Fatal error: Arithmetic overflow");
    EXPECT_EQ(preferences.integer(remindersShownKey), std::numeric_limits<std::int64_t>::max());
}

} // namespace velloran
