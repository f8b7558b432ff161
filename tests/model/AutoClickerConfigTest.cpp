#include "model/AutoClickerConfig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace velloran {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr const char* intervalMessage = "Click interval must be between 0.01 and 3600.0 seconds.";
constexpr const char* clicksMessage = "Total clicks must be between 1 and 10000000.";
constexpr const char* noClicksMessage = "Enter the number of clicks before stopping.";
constexpr const char* delayMessage = "Start delay must be between 0.0 and 3600.0 seconds.";
constexpr const char* stationaryMessage = "Stationary duration must be between 0.1 and 3600.0 seconds.";

using Error = std::optional<std::string>;

/// The default record with one thing changed; what a run says to it.
template<typename Change>
Error errorAfter(Change change) {
    AutoClickerConfig config;
    change(config);
    EXPECT_EQ(config.isValid(), !config.validationError());
    return config.validationError();
}

Error errorOfInterval(double seconds) {
    return errorAfter([seconds](AutoClickerConfig& config) { config.clickIntervalSeconds = seconds; });
}

Error errorOfClicks(std::optional<std::int64_t> clicks, StopMode mode = StopMode::after_clicks) {
    return errorAfter([clicks, mode](AutoClickerConfig& config) {
        config.maxClicks = clicks;
        config.stopMode = mode;
    });
}

Error errorOfDelay(double seconds) {
    return errorAfter([seconds](AutoClickerConfig& config) { config.startDelaySeconds = seconds; });
}

Error errorOfStationary(double seconds, bool isRequired = true) {
    return errorAfter([seconds, isRequired](AutoClickerConfig& config) {
        config.stationarySeconds = seconds;
        config.requireStationaryMouse = isRequired;
    });
}

} // namespace

TEST(AutoClickerConfig, Defaults) {
    const AutoClickerConfig config;
    EXPECT_EQ(config.mouseButton, MouseButton::left);
    EXPECT_EQ(config.clickIntervalSeconds, 7.0);
    EXPECT_EQ(config.stopMode, StopMode::after_clicks);
    EXPECT_EQ(config.maxClicks, 100);
    EXPECT_EQ(config.startDelaySeconds, 0.0);
    EXPECT_FALSE(config.requireStationaryMouse);
    EXPECT_EQ(config.stationarySeconds, 1.0);
    EXPECT_EQ(config.hotkey, std::nullopt);
    EXPECT_FALSE(config.playClickSound);
    EXPECT_FALSE(config.minimizeToTray);
    EXPECT_EQ(config, AutoClickerConfig::default_());
}

TEST(AutoClickerConfig, FieldsStandInTheirOrder) {
    const HotkeyCombo combo{0xC0000, 1, "⌃⌥S"};
    const AutoClickerConfig config{MouseButton::right, 0.5, StopMode::manual, 3, 1.5, true, 2.5, combo, true, true};
    EXPECT_EQ(config.mouseButton, MouseButton::right);
    EXPECT_EQ(config.clickIntervalSeconds, 0.5);
    EXPECT_EQ(config.stopMode, StopMode::manual);
    EXPECT_EQ(config.maxClicks, 3);
    EXPECT_EQ(config.startDelaySeconds, 1.5);
    EXPECT_TRUE(config.requireStationaryMouse);
    EXPECT_EQ(config.stationarySeconds, 2.5);
    EXPECT_EQ(config.hotkey, combo);
    EXPECT_TRUE(config.playClickSound);
    EXPECT_TRUE(config.minimizeToTray);
}

TEST(AutoClickerConfig, EqualityTakesAllTenFields) {
    const auto differs = [](auto change) {
        AutoClickerConfig other;
        change(other);
        return !(other == AutoClickerConfig::default_());
    };
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.mouseButton = MouseButton::middle; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.clickIntervalSeconds = 7.5; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.stopMode = StopMode::manual; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.maxClicks.reset(); }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.maxClicks = 101; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.startDelaySeconds = 0.5; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.requireStationaryMouse = true; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.stationarySeconds = 1.5; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.hotkey = HotkeyCombo{}; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.playClickSound = true; }));
    EXPECT_TRUE(differs([](AutoClickerConfig& config) { config.minimizeToTray = true; }));
}

TEST(AutoClickerConfig, Limits) {
    EXPECT_EQ(AutoClickerConfig::intervalMin, 0.01);
    EXPECT_EQ(AutoClickerConfig::intervalMax, 3600.0);
    EXPECT_EQ(AutoClickerConfig::clicksMin, 1);
    EXPECT_EQ(AutoClickerConfig::clicksMax, 10'000'000);
    EXPECT_EQ(AutoClickerConfig::delayMin, 0.0);
    EXPECT_EQ(AutoClickerConfig::delayMax, 3600.0);
    EXPECT_EQ(AutoClickerConfig::stationaryMin, 0.1);
    EXPECT_EQ(AutoClickerConfig::stationaryMax, 3600.0);
}

TEST(AutoClickerConfig, DefaultRecordIsValid) {
    EXPECT_EQ(AutoClickerConfig::default_().validationError(), std::nullopt);
    EXPECT_TRUE(AutoClickerConfig::default_().isValid());
}

TEST(AutoClickerConfig, IntervalBoundsAreInclusive) {
    EXPECT_EQ(errorOfInterval(0.01), std::nullopt);
    EXPECT_EQ(errorOfInterval(3600.0), std::nullopt);
    EXPECT_EQ(errorOfInterval(0.009), intervalMessage);
    EXPECT_EQ(errorOfInterval(std::nextafter(3600.0, 4000.0)), intervalMessage);
    EXPECT_EQ(errorOfInterval(0.0), intervalMessage);
    EXPECT_EQ(errorOfInterval(-1.0), intervalMessage);
    EXPECT_EQ(errorOfInterval(std::numeric_limits<double>::infinity()), intervalMessage);
}

TEST(AutoClickerConfig, CountIsNeededToStopAfterIt) {
    EXPECT_EQ(errorOfClicks(std::nullopt), noClicksMessage);
    EXPECT_EQ(errorOfClicks(0), clicksMessage);
    EXPECT_EQ(errorOfClicks(10'000'001), clicksMessage);
    EXPECT_EQ(errorOfClicks(-5), clicksMessage);
    EXPECT_EQ(errorOfClicks(1), std::nullopt);
    EXPECT_EQ(errorOfClicks(10'000'000), std::nullopt);
}

TEST(AutoClickerConfig, CountIsNotLookedAtInManualMode) {
    EXPECT_EQ(errorOfClicks(std::nullopt, StopMode::manual), std::nullopt);
    EXPECT_EQ(errorOfClicks(0, StopMode::manual), std::nullopt);
    EXPECT_EQ(errorOfClicks(10'000'001, StopMode::manual), std::nullopt);
}

TEST(AutoClickerConfig, DelayBoundsAreInclusive) {
    EXPECT_EQ(errorOfDelay(0.0), std::nullopt);
    EXPECT_EQ(errorOfDelay(3600.0), std::nullopt);
    EXPECT_EQ(errorOfDelay(-0.001), delayMessage);
    EXPECT_EQ(errorOfDelay(3600.5), delayMessage);
}

TEST(AutoClickerConfig, StationaryDurationCountsOnlyWhenRequired) {
    EXPECT_EQ(errorOfStationary(0.05, false), std::nullopt);
    EXPECT_EQ(errorOfStationary(0.05), stationaryMessage);
    EXPECT_EQ(errorOfStationary(3600.5), stationaryMessage);
    EXPECT_EQ(errorOfStationary(0.1), std::nullopt);
    EXPECT_EQ(errorOfStationary(3600.0), std::nullopt);
}

TEST(AutoClickerConfig, WhatIsNoNumberPassesTheBounds) {
    EXPECT_EQ(errorOfInterval(notANumber), std::nullopt);
    EXPECT_EQ(errorOfDelay(notANumber), std::nullopt);
    EXPECT_EQ(errorOfStationary(notANumber), std::nullopt);
}

TEST(AutoClickerConfig, FirstFailingCheckGivesTheMessage) {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.0;
    config.maxClicks = 0;
    config.startDelaySeconds = -1.0;
    config.requireStationaryMouse = true;
    config.stationarySeconds = 0.0;
    EXPECT_EQ(config.validationError(), intervalMessage);
    config.clickIntervalSeconds = 1.0;
    EXPECT_EQ(config.validationError(), clicksMessage);
    config.maxClicks.reset();
    EXPECT_EQ(config.validationError(), noClicksMessage);
    config.maxClicks = 5;
    EXPECT_EQ(config.validationError(), delayMessage);
    config.startDelaySeconds = 0.0;
    EXPECT_EQ(config.validationError(), stationaryMessage);
    config.stationarySeconds = 0.1;
    EXPECT_EQ(config.validationError(), std::nullopt);
}

} // namespace velloran
