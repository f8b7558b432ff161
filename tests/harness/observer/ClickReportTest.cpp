#include "harness/observer/ClickReport.h"

#include <gtest/gtest.h>

namespace velloran::observer {

namespace {

constexpr std::uint64_t millisecond = 1'000'000;

void addClick(std::vector<InputEvent>& events, std::uint64_t atMilliseconds, unsigned button = 1,
              Place place = {30, 20}) {
    using Kind = InputEvent::Kind;
    const auto serverTime = static_cast<std::uint32_t>(atMilliseconds);
    events.push_back({Kind::buttonPress, false, button, 0, place, serverTime, atMilliseconds * millisecond});
    events.push_back({Kind::buttonRelease, false, button, 0, place, serverTime, atMilliseconds * millisecond});
}

} // namespace

TEST(ClickReport, CountsButtonsAndPlaces) {
    std::vector<InputEvent> events;
    addClick(events, 0);
    addClick(events, 10, 3);
    addClick(events, 20, 3, {31, 20});
    const ClickReport report = summarize(events, 0.0);
    EXPECT_EQ(report.presses, 3U);
    EXPECT_EQ(report.releases, 3U);
    EXPECT_TRUE(report.areInPairs);
    EXPECT_EQ(report.pressesOfButton, (std::map<unsigned, std::size_t>{{1, 1}, {3, 2}}));
    EXPECT_EQ(report.places, (std::vector<Place>{{30, 20}, {31, 20}}));
}

TEST(ClickReport, MeasuresIntervalsAgainstTheNominalOne) {
    std::vector<InputEvent> events;
    addClick(events, 1000);
    addClick(events, 1050);
    addClick(events, 1102);
    addClick(events, 1150);
    const ClickReport report = summarize(events, 0.05);
    EXPECT_DOUBLE_EQ(report.meanInterval, 50.0);
    EXPECT_DOUBLE_EQ(report.meanServerInterval, 50.0);
    EXPECT_DOUBLE_EQ(report.shortestInterval, 48.0);
    EXPECT_DOUBLE_EQ(report.longestInterval, 52.0);
    EXPECT_DOUBLE_EQ(report.medianJitter, 2.0);
    EXPECT_DOUBLE_EQ(report.jitter99, 2.0);
    EXPECT_DOUBLE_EQ(report.drift, 0.0);
}

TEST(ClickReport, DriftIsHowLateTheLastClickCame) {
    std::vector<InputEvent> events;
    addClick(events, 0);
    addClick(events, 51);
    addClick(events, 102);
    EXPECT_DOUBLE_EQ(summarize(events, 0.05).drift, 2.0);
    EXPECT_DOUBLE_EQ(summarize(events, 0.0).drift, 0.0);
}

TEST(ClickReport, SeesWhatIsNoPair) {
    using Kind = InputEvent::Kind;
    const InputEvent press{Kind::buttonPress, false, 1, 0, {}, 0, 0};
    const InputEvent release{Kind::buttonRelease, false, 1, 0, {}, 0, 0};
    const InputEvent otherRelease{Kind::buttonRelease, false, 2, 0, {}, 0, 0};
    EXPECT_TRUE(summarize({}, 0.0).areInPairs);
    EXPECT_TRUE(summarize({press, release, press, release}, 0.0).areInPairs);
    EXPECT_FALSE(summarize({press}, 0.0).areInPairs);
    EXPECT_FALSE(summarize({release}, 0.0).areInPairs);
    EXPECT_FALSE(summarize({press, press, release, release}, 0.0).areInPairs);
    EXPECT_FALSE(summarize({press, otherRelease}, 0.0).areInPairs);
}

TEST(ClickReport, WritesJson) {
    std::vector<InputEvent> events;
    addClick(events, 0);
    addClick(events, 50);
    EXPECT_EQ(
        toJson(summarize(events, 0.05)),
        R"({"clicks": 2, "presses": 2, "releases": 2, "inPairs": true, "buttons": {"1": 2}, "places": [[30, 20]], )"
        R"("meanIntervalMs": 50.000, "shortestIntervalMs": 50.000, "longestIntervalMs": 50.000, "jitterP50Ms": 0.000, )"
        R"("jitterP99Ms": 0.000, "jitterMaxMs": 0.000, "driftMs": 0.000, "meanServerIntervalMs": 50.000})");
}

} // namespace velloran::observer
