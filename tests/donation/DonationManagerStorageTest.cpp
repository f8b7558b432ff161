#include "donation/DonationBench.h"

#include <memory>
#include <string>
#include <vector>

namespace velloran {

TEST_F(DonationManagerTest, LaterStartsChangeNothing) {
    open();
    platform.loop.advance(30.0);
    manager.reset();
    const auto before = preferences.values;
    open();
    EXPECT_EQ(preferences.values, before);
}

TEST_F(DonationManagerTest, AnythingUnderTheFirstLaunchKeyCountsAsSetUp) {
    preferences.values[firstLaunchKey] = Bytes("no date");
    open();
    EXPECT_EQ(preferences.writes, 0);
    platform.loop.advance(3600.0);
    EXPECT_FALSE(isVisible());
}

TEST_F(DonationManagerTest, SnoozeStoresTheCountThenTheDateThenHides) {
    open();
    platform.loop.advance(60.0);
    preferences.written.clear();
    std::vector<std::string> order;
    const Subscription watching = manager->isPromptVisible.observeWillChange([&] {
        order = preferences.written;
        order.emplace_back("hide");
    });
    manager->snooze();
    EXPECT_EQ(order, (std::vector<std::string>{remindersShownKey, nextReminderKey, "hide"}));
}

TEST_F(DonationManagerTest, WhatBelongsTogetherIsOneChange) {
    open();
    EXPECT_EQ(preferences.writes, 1) << "the set-up";
    manager->snooze();
    EXPECT_EQ(preferences.writes, 2);
    manager->acknowledgeAlreadyDonated();
    EXPECT_EQ(preferences.writes, 3);
    manager->markDonated();
    EXPECT_EQ(preferences.writes, 4);
    EXPECT_TRUE(manager->hasDonated());
    EXPECT_FALSE(preferences.holds(nextReminderKey));
}

TEST_F(DonationManagerTest, CounterOfTheWrongTypeReadsAsZero) {
    open();
    preferences.values[remindersShownKey] = Bytes("7");
    manager->snooze();
    EXPECT_EQ(preferences.integer(remindersShownKey), 1);
    EXPECT_EQ(untilNext(), 60.0);
    preferences.values.erase(remindersShownKey);
    manager->snooze();
    EXPECT_EQ(preferences.integer(remindersShownKey), 1);
}

TEST_F(DonationManagerTest, NegativeCounterCountsOn) {
    open();
    preferences.values[remindersShownKey] = std::int64_t{-5};
    manager->snooze();
    EXPECT_EQ(preferences.integer(remindersShownKey), -4);
    EXPECT_EQ(untilNext(), 1800.0);
}

TEST_F(DonationManagerTest, DateOfTheWrongTypeSilencesUntilTheNextSnooze) {
    open();
    preferences.values[nextReminderKey] = std::int64_t{0};
    platform.loop.advance(7200.0);
    EXPECT_FALSE(isVisible());
    manager->snooze();
    EXPECT_EQ(secondsUntilVisible(100), 60);
}

TEST_F(DonationManagerTest, MissingDateIsSilent) {
    open();
    preferences.values.erase(nextReminderKey);
    platform.loop.advance(7200.0);
    EXPECT_FALSE(isVisible());
}

TEST_F(DonationManagerTest, DonatedOfTheWrongTypeReadsAsFalse) {
    open();
    preferences.values[donatedKey] = std::int64_t{1};
    EXPECT_FALSE(manager->hasDonated());
    platform.loop.advance(60.0);
    EXPECT_TRUE(isVisible());
}

TEST_F(DonationManagerTest, WorksOnThePreferencesItIsGiven) {
    fakes::FakePreferences others;
    const DonationManager other(platform.loop, others, platform.urlOpener());
    EXPECT_TRUE(others.holds(firstLaunchKey));
    EXPECT_TRUE(preferences.values.empty());
}

TEST_F(DonationManagerTest, FailingWritesDoNoHarm) {
    preferences.isReadOnly = true;
    open();
    platform.loop.advance(120.0);
    EXPECT_FALSE(isVisible());
    manager->snooze();
    manager->markDonated();
    EXPECT_FALSE(manager->hasDonated());
}

} // namespace velloran
