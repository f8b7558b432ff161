#include "engine/NestedPlay.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// What a start or a stop does that is asked for by somebody who is being told of a change: in every notification that a
// run gives, one after the other.

namespace velloran {

namespace {

AutoClickerConfig limited() {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.5;
    config.maxClicks = 3;
    return config;
}

AutoClickerConfig everything() {
    AutoClickerConfig config = limited();
    config.startDelaySeconds = 0.25;
    config.requireStationaryMouse = true;
    config.stationarySeconds = 0.1;
    return config;
}

Play::Step wait(double seconds) {
    return [seconds](Play& play) { play.advance(seconds); };
}

void invalidate(AutoClickerConfig& config) {
    config.clickIntervalSeconds = 0.0;
}

std::vector<Play::Scenario> acceptedScenarios() {
    AutoClickerConfig manual = everything();
    manual.stopMode = StopMode::manual;
    return {
        {"with everything to its end", everything(), {&Play::start, wait(10.0)}},
        {"plain to its end", limited(), {&Play::start, wait(10.0)}},
        {"until it is stopped", manual, {&Play::start, wait(2.0), &Play::stop}},
        {"stopped in its countdown", everything(), {&Play::start, wait(0.15), &Play::stop}},
        {"after one that is complete", limited(), {&Play::start, wait(10.0), &Play::start, wait(10.0)}},
        {"in place of one that clicks", everything(), {&Play::start, wait(1.0), &Play::start, wait(10.0)}},
    };
}

std::vector<Play::Scenario> refusedScenarios() {
    const Play::Step makeInvalid = [](Play& play) { play.edit(invalidate); };
    const Play::Step takeTrust = [](Play& play) { play.trust(false); };
    const Play::Step giveTrust = [](Play& play) { play.trust(true); };
    return {
        {"refused as invalid", limited(), {makeInvalid, &Play::start, wait(1.0)}},
        {"refused for want of permission", limited(), {takeTrust, &Play::start, wait(1.0)}},
        {"refused as invalid under a run",
         everything(),
         {&Play::start, wait(1.0), makeInvalid, &Play::start, wait(0.7)}},
        {"refused for want of permission in a countdown",
         everything(),
         {&Play::start, wait(0.1), takeTrust, &Play::start, wait(1.0)}},
        {"brought back by the permission", limited(), {takeTrust, &Play::start, giveTrust, &Play::refresh, wait(1.0)}},
        {"ended by the loss of the permission", everything(), {&Play::start, wait(1.0), takeTrust, &Play::report}},
    };
}

/// Plays the scenario once for every notification in it. `act` happens there, and `check` looks at what came of it.
void inEveryNotification(const Play::Scenario& scenario, const std::function<void(Play&)>& act,
                         const std::function<void(Play&)>& check) {
    SCOPED_TRACE(scenario.name);
    int notifications = 0;
    {
        Play undisturbed;
        undisturbed.perform(scenario, -1, {});
        notifications = undisturbed.notifications;
    }
    ASSERT_GT(notifications, 1);
    for (int place = 0; place < notifications; ++place) {
        Play play;
        play.perform(scenario, place, act);
        ASSERT_TRUE(play.moment) << "a play up to a notification is always the same";
        SCOPED_TRACE("notification " + std::to_string(place) + " of " + std::to_string(notifications) + ": " +
                     play.moment->notification);
        check(play);
    }
}

void expectStopHeld(Play& play) {
    const ClickerStatus expected =
        play.moment->statusBefore == ClickerStatus::completed ? ClickerStatus::completed : ClickerStatus::idle;
    for (const AutoClickerRuntime& record : {play.moment->record, play.runtime()}) {
        EXPECT_EQ(record.status, expected);
        EXPECT_EQ(record.nextClickAt, std::nullopt);
        EXPECT_EQ(record.countdownRemaining, std::nullopt);
        EXPECT_FALSE(record.stationaryWaitActive);
    }
    play.platform.loop.runDue();
    const AutoClickerRuntime after = play.runtime();
    EXPECT_EQ(play.store.use_count(), 1) << "a loop that runs holds the store";
    play.advance(60.0);
    EXPECT_EQ(play.runtime(), after) << "nobody writes any more";
    EXPECT_EQ(play.streamed.back(), after) << "the last that was told is how it stayed";
    EXPECT_EQ(play.handedOver(), play.moment->clicks) << "no click after the stop";
    // Counts go on to the end of their click; what else was announced is dropped, and nothing more is announced.
    const bool isDropped = play.moment->notification == Play::announcement && play.runtime() == play.moment->record;
    EXPECT_EQ(play.announced - play.changed, isDropped ? 1 : 0);
    EXPECT_EQ(play.platform.pairedClicks, static_cast<std::uint64_t>(play.moment->clicks));
    EXPECT_EQ(play.platform.loop.pendingCalls(), 0U);
}

/// The counts tell of the clicks, whatever cut the run short.
void expectTrueCounts(Play& play) {
    EXPECT_EQ(play.runtime().clicksCompleted, play.handedOver());
    if (play.runtime().clicksRemaining) {
        EXPECT_EQ(*play.runtime().clicksRemaining, 3 - play.runtime().clicksCompleted);
    }
}

} // namespace

TEST(NestedOrder, StopHoldsInEveryNotificationOfARun) {
    for (const Play::Scenario& scenario : acceptedScenarios()) {
        inEveryNotification(scenario, &Play::stop, expectStopHeld);
    }
}

TEST(NestedOrder, StopHoldsInEveryNotificationOfARefusedStart) {
    for (const Play::Scenario& scenario : refusedScenarios()) {
        inEveryNotification(scenario, &Play::stop, expectStopHeld);
    }
}

TEST(NestedOrder, StopLeavesTheCountOfTheClicksThatWereMade) {
    inEveryNotification(acceptedScenarios().front(), &Play::stop, [](Play& play) {
        play.advance(60.0);
        expectTrueCounts(play);
    });
}

TEST(NestedOrder, StoreStartsAgainAfterAStopInAnyNotification) {
    inEveryNotification(acceptedScenarios().front(), &Play::stop, [](Play& play) {
        play.advance(1.0);
        play.start();
        play.advance(60.0);
        EXPECT_EQ(play.status(), ClickerStatus::completed);
        EXPECT_EQ(play.runtime().clicksCompleted, 3);
        EXPECT_EQ(play.handedOver(), play.moment->clicks + 3);
    });
}

TEST(NestedOrder, StartInEveryNotificationBeginsOneNewRun) {
    for (const Play::Scenario& scenario : acceptedScenarios()) {
        if (scenario.config.stopMode == StopMode::manual) {
            continue;
        }
        inEveryNotification(scenario, &Play::start, [](Play& play) {
            EXPECT_TRUE(isActive(play.moment->record.status));
            EXPECT_EQ(play.moment->record.clicksCompleted, 0);
            play.advance(60.0);
            EXPECT_EQ(play.status(), ClickerStatus::completed);
            EXPECT_EQ(play.runtime().clicksCompleted, 3);
            EXPECT_EQ(play.runtime().clicksRemaining, 0);
            EXPECT_EQ(play.handedOver(), play.moment->clicks + 3) << "the old loop clicks no more";
            EXPECT_EQ(play.store.use_count(), 1);
            EXPECT_EQ(play.platform.loop.pendingCalls(), 0U);
        });
    }
}

TEST(NestedOrder, RefusedStartInEveryNotificationLeavesTheRunRunning) {
    const auto startInvalid = [](Play& play) {
        const AutoClickerConfig valid = play.store->config.get();
        play.edit(invalidate);
        play.start();
        play.store->config.set(valid);
    };
    inEveryNotification(acceptedScenarios().front(), startInvalid, [](Play& play) {
        EXPECT_EQ(play.moment->record.status, ClickerStatus::error);
        play.advance(60.0);
        expectTrueCounts(play);
        EXPECT_EQ(play.handedOver(), 3) << "to its end";
        EXPECT_EQ(play.store.use_count(), 1);
    });
}

TEST(NestedOrder, StopInTheNotificationOfARefusalOpensNoSettings) {
    const Play::Scenario refused = refusedScenarios().at(1);
    {
        Play undisturbed;
        undisturbed.perform(refused, -1, {});
        EXPECT_EQ(undisturbed.platform.count("open settings"), 1);
    }
    inEveryNotification(refused, &Play::stop, [](Play& play) { EXPECT_EQ(play.platform.count("open settings"), 0); });
}

} // namespace velloran
