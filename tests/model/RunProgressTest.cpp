#include "model/RunProgress.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran {

namespace {

AutoClickerRuntime running(std::int64_t completed) {
    AutoClickerRuntime runtime;
    runtime.status = ClickerStatus::running;
    runtime.clicksCompleted = completed;
    return runtime;
}

} // namespace

TEST(RunProgress, IsThatOfACountedRunWithACount) {
    AutoClickerConfig config;
    EXPECT_EQ(RunProgress::of(running(37), config), (RunProgress{37, 100}));
    config.maxClicks.reset();
    EXPECT_EQ(RunProgress::of(running(37), config), std::nullopt);
    config.maxClicks = 100;
    config.stopMode = StopMode::manual;
    EXPECT_EQ(RunProgress::of(running(37), config), std::nullopt);
}

TEST(RunProgress, IsShownInNoOtherStatus) {
    for (const ClickerStatus status : allClickerStatuses) {
        AutoClickerRuntime runtime = running(37);
        runtime.status = status;
        EXPECT_EQ(RunProgress::of(runtime, {}).has_value(), status == ClickerStatus::running) << rawValue(status);
    }
}

TEST(RunProgress, IsAFractionAndAText) {
    EXPECT_EQ((RunProgress{37, 100}.fraction()), 0.37);
    EXPECT_EQ((RunProgress{37, 100}.text()), "37 / 100 clicks completed");
    EXPECT_EQ((RunProgress{1, 1}.text()), "1 / 1 clicks completed");
}

TEST(RunProgress, StaysBetweenNothingAndAllOfIt) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ((RunProgress{101, 100}.fraction()), 1.0);
    EXPECT_EQ((RunProgress{5, 0}.fraction()), 0.0);
    EXPECT_EQ((RunProgress{5, smallest}.fraction()), 0.0);
    EXPECT_EQ((RunProgress{5, smallest}.text()), "5 / -9223372036854775808 clicks completed");
    EXPECT_EQ((RunProgress{largest, largest}.fraction()), 1.0);
    EXPECT_EQ((RunProgress{1, largest}.text()), "1 / 9223372036854775807 clicks completed");
}

} // namespace velloran
