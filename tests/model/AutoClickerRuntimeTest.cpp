#include "model/AutoClickerRuntime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace velloran {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

AutoClickerRuntime withStatus(ClickerStatus status) {
    AutoClickerRuntime runtime;
    runtime.status = status;
    return runtime;
}

std::string countdownMessage(double remaining) {
    AutoClickerRuntime runtime = withStatus(ClickerStatus::delayed);
    runtime.countdownRemaining = remaining;
    return runtime.message();
}

std::string limitedMessage(std::int64_t completed, std::int64_t remaining) {
    AutoClickerRuntime runtime = withStatus(ClickerStatus::running);
    runtime.clicksCompleted = completed;
    runtime.clicksRemaining = remaining;
    return runtime.message();
}

std::string countMessage(ClickerStatus status, std::int64_t completed) {
    AutoClickerRuntime runtime = withStatus(status);
    runtime.clicksCompleted = completed;
    return runtime.message();
}

} // namespace

TEST(AutoClickerRuntime, NewRecordIsIdleAndStopped) {
    const AutoClickerRuntime runtime;
    EXPECT_EQ(runtime.status, ClickerStatus::idle);
    EXPECT_EQ(runtime.clicksCompleted, 0);
    EXPECT_EQ(runtime.clicksRemaining, std::nullopt);
    EXPECT_EQ(runtime.startedAt, std::nullopt);
    EXPECT_EQ(runtime.nextClickAt, std::nullopt);
    EXPECT_EQ(runtime.countdownRemaining, std::nullopt);
    EXPECT_EQ(runtime.errorMessage, std::nullopt);
    EXPECT_FALSE(runtime.stationaryWaitActive);
    EXPECT_EQ(runtime.message(), "Clicking is stopped");
    EXPECT_EQ(runtime, AutoClickerRuntime::initial());
}

TEST(AutoClickerRuntime, EqualityTakesAllEightFields) {
    const AutoClickerRuntime whole{ClickerStatus::running, 3, 4, Date(1.0), Date(2.0), 0.5, "why", true};
    const auto differs = [&whole](auto change) {
        AutoClickerRuntime other = whole;
        change(other);
        return !(other == whole);
    };
    EXPECT_EQ(AutoClickerRuntime(whole), whole);
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.status = ClickerStatus::idle; }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.clicksCompleted = 4; }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.clicksRemaining.reset(); }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.startedAt = Date(1.5); }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.nextClickAt.reset(); }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.countdownRemaining = 0.25; }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.errorMessage = "else"; }));
    EXPECT_TRUE(differs([](AutoClickerRuntime& other) { other.stationaryWaitActive = false; }));
}

TEST(AutoClickerRuntime, FixedMessages) {
    EXPECT_EQ(withStatus(ClickerStatus::idle).message(), "Clicking is stopped");
    EXPECT_EQ(withStatus(ClickerStatus::arming).message(), "Preparing to start");
    EXPECT_EQ(withStatus(ClickerStatus::delayed).message(), "Delayed start active");
    EXPECT_EQ(withStatus(ClickerStatus::paused).message(), "Paused — press Start to resume");
}

TEST(AutoClickerRuntime, CountdownIsRoundedUp) {
    EXPECT_EQ(countdownMessage(0.3), "Starting in 1 second");
    EXPECT_EQ(countdownMessage(1.0), "Starting in 1 second");
    EXPECT_EQ(countdownMessage(2.0), "Starting in 2 seconds");
    EXPECT_EQ(countdownMessage(2.01), "Starting in 3 seconds");
    EXPECT_EQ(countdownMessage(0.0), "Starting in 0 seconds");
    EXPECT_EQ(countdownMessage(-0.3), "Starting in 0 seconds");
    EXPECT_EQ(countdownMessage(-7.5), "Starting in 0 seconds");
    EXPECT_EQ(countdownMessage(3600.0), "Starting in 3600 seconds");
}

TEST(AutoClickerRuntime, StillnessWaitGoesBeforeTheCount) {
    AutoClickerRuntime runtime = withStatus(ClickerStatus::running);
    runtime.clicksRemaining = 5;
    runtime.stationaryWaitActive = true;
    EXPECT_EQ(runtime.message(), "Waiting for mouse to remain still");
    runtime.clicksRemaining.reset();
    EXPECT_EQ(runtime.message(), "Waiting for mouse to remain still");
}

TEST(AutoClickerRuntime, StillnessWaitCountsOnlyWhileRunning) {
    AutoClickerRuntime runtime = withStatus(ClickerStatus::completed);
    runtime.stationaryWaitActive = true;
    EXPECT_EQ(runtime.message(), "Completed — reached 0 clicks");
}

TEST(AutoClickerRuntime, LimitedRunShowsDoneAndTotalAlwaysPlural) {
    EXPECT_EQ(limitedMessage(0, 5), "0 / 5 clicks completed");
    EXPECT_EQ(limitedMessage(12, 88), "12 / 100 clicks completed");
    EXPECT_EQ(limitedMessage(0, 1), "0 / 1 clicks completed");
    EXPECT_EQ(limitedMessage(1, 0), "1 / 1 clicks completed");
    EXPECT_EQ(limitedMessage(1'234'567, 8'765'433), "1234567 / 10000000 clicks completed");
}

TEST(AutoClickerRuntime, UnlimitedRunShowsTheCount) {
    EXPECT_EQ(countMessage(ClickerStatus::running, 0), "0 clicks completed");
    EXPECT_EQ(countMessage(ClickerStatus::running, 1), "1 click completed");
    EXPECT_EQ(countMessage(ClickerStatus::running, 1'000'000), "1000000 clicks completed");
}

TEST(AutoClickerRuntime, CompletionShowsTheCount) {
    EXPECT_EQ(countMessage(ClickerStatus::completed, 1), "Completed — reached 1 click");
    EXPECT_EQ(countMessage(ClickerStatus::completed, 100), "Completed — reached 100 clicks");
}

TEST(AutoClickerRuntime, ErrorShowsItsMessageOrThatNoneIsKnown) {
    AutoClickerRuntime runtime = withStatus(ClickerStatus::error);
    EXPECT_EQ(runtime.message(), "Unknown error");
    runtime.errorMessage = "Enter the number of clicks before stopping.";
    EXPECT_EQ(runtime.message(), "Enter the number of clicks before stopping.");
    runtime.errorMessage = "";
    EXPECT_EQ(runtime.message(), "");
}

TEST(AutoClickerRuntime, LargestCountdownsThatFitAreShown) {
    EXPECT_EQ(countdownMessage(0x1.fffffffffffffp62), "Starting in 9223372036854774784 seconds");
    EXPECT_EQ(countdownMessage(-0x1p63), "Starting in 0 seconds");
    EXPECT_EQ(limitedMessage(largest - 1, 1), "9223372036854775806 / 9223372036854775807 clicks completed");
}

TEST(AutoClickerRuntimeDeathTest, CountdownThatIsNoWholeNumberIsFatal) {
    EXPECT_DEATH(countdownMessage(notANumber),
                 "^Fatal error: Double value cannot be converted to Int because it is either infinite or NaN\n$");
    EXPECT_DEATH(countdownMessage(infinity),
                 "^Fatal error: Double value cannot be converted to Int because it is either infinite or NaN\n$");
    EXPECT_DEATH(countdownMessage(-infinity),
                 "^Fatal error: Double value cannot be converted to Int because it is either infinite or NaN\n$");
    EXPECT_DEATH(
        countdownMessage(-1e19),
        "^Fatal error: Double value cannot be converted to Int because the result would be less than Int\\.min\n$");
    EXPECT_DEATH(
        countdownMessage(0x1p63),
        "^Fatal error: Double value cannot be converted to Int because the result would be greater than Int\\.max\n$");
}

TEST(AutoClickerRuntimeDeathTest, TotalThatOverflowsIsFatal) {
    EXPECT_DEATH(limitedMessage(largest, 1), "^Fatal error: ");
}

} // namespace velloran
