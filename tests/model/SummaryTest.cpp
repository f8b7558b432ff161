#include "model/summary.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran {

TEST(Summary, TellsTheDefaults) {
    const AutoClickerConfig config;
    EXPECT_EQ(summary::interval(config), "7.00 seconds");
    EXPECT_EQ(summary::stop(config), "100 clicks");
    EXPECT_EQ(summary::hotkey(config), "Not set");
    EXPECT_EQ(summary::delay(config), "0 seconds");
    EXPECT_EQ(summary::stationaryCheck(config), "Off");
}

TEST(Summary, TellsWhatIsSet) {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.125;
    config.stopMode = StopMode::manual;
    config.startDelaySeconds = 2.5;
    config.requireStationaryMouse = true;
    config.stationarySeconds = 0.25;
    config.hotkey = HotkeyCombo{0, 1, "⌃⌥S"};
    EXPECT_EQ(summary::interval(config), "0.12 seconds");
    EXPECT_EQ(summary::stop(config), "Run until stopped");
    EXPECT_EQ(summary::hotkey(config), "⌃⌥S");
    EXPECT_EQ(summary::delay(config), "2.50 seconds");
    EXPECT_EQ(summary::stationaryCheck(config), "0.2 seconds");
}

TEST(Summary, CountingWithoutACountReadsAsNone) {
    AutoClickerConfig config;
    config.maxClicks.reset();
    EXPECT_EQ(summary::stop(config), "0 clicks");
}

TEST(Summary, TellsWhatNoRunWouldTake) {
    AutoClickerConfig config;
    config.maxClicks = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(summary::stop(config), "9223372036854775807 clicks");
    config.maxClicks = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(summary::stop(config), "-9223372036854775808 clicks");
    config.clickIntervalSeconds = std::numeric_limits<double>::max();
    config.startDelaySeconds = -0.5;
    EXPECT_EQ(summary::interval(config).size(), 309 + std::string(".00 seconds").size());
    EXPECT_EQ(summary::delay(config), "-0.50 seconds");
}

} // namespace velloran
