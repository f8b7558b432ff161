#include "engine/StoreTest.h"

#include <limits>

// What can be read from a file and no run would take: it is kept, refused with a message, and disturbs no run.

namespace velloran {

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

class StoreExtremesTest : public StoreTest {
protected:
    /// Configurations that are read but not valid.
    static std::vector<AutoClickerConfig> invalid() {
        std::vector<AutoClickerConfig> all;
        for (const std::int64_t count : {largest, smallest, std::int64_t{0}}) {
            all.push_back(counted(count));
        }
        for (const double seconds : {1e300, -1e300, std::numeric_limits<double>::denorm_min() * -1.0}) {
            all.push_back(unlimited(seconds));
            all.push_back(unlimited());
            all.back().startDelaySeconds = seconds;
            all.push_back(unlimited());
            all.back().requireStationaryMouse = true;
            all.back().stationarySeconds = seconds;
        }
        return all;
    }
};

} // namespace

TEST_F(StoreExtremesTest, AreReadBackAsTheyWereAndRefused) {
    for (const AutoClickerConfig& config : invalid()) {
        ASSERT_FALSE(config.isValid());
        open(config);
        EXPECT_EQ(store->config.get(), config);
        store->start();
        EXPECT_EQ(status(), ClickerStatus::error);
        EXPECT_EQ(runtime().message(), *config.validationError());
        EXPECT_EQ(runtime().clicksRemaining, std::nullopt);
        advance(1.0);
        EXPECT_EQ(PresetStore(platform.preferences).loadConfig(), config);
        EXPECT_EQ(platform.count("post"), 0);
        store.reset();
        HotkeyManager::endShared();
    }
}

TEST_F(StoreExtremesTest, ArrivingInARunTheyLeaveItAsItIs) {
    open(counted(1000, 0.1));
    store->start();
    advance(0.55);
    for (const AutoClickerConfig& config : invalid()) {
        store->config.set(config);
        store->start();
        EXPECT_EQ(runtime().message(), *config.validationError());
        advance(0.1);
        EXPECT_EQ(runtime().clicksCompleted + runtime().clicksRemaining.value_or(0), 1000);
    }
    EXPECT_GT(runtime().clicksCompleted, 10);
}

TEST_F(StoreExtremesTest, ACountThatIsNotAskedForIsNoneOfTheRuns) {
    for (const std::int64_t count : {largest, smallest}) {
        AutoClickerConfig config = unlimited(0.1);
        config.maxClicks = count;
        open(config);
        store->start();
        advance(0.25);
        EXPECT_EQ(runtime().message(), "3 clicks completed");
        EXPECT_EQ(runtime().clicksRemaining, std::nullopt);
        store->stop();
        platform.loop.runDue();
        store.reset();
        HotkeyManager::endShared();
    }
}

TEST_F(StoreExtremesTest, AClockSetFarBackOnlyShowsALongerCountdown) {
    AutoClickerConfig config = unlimited();
    config.startDelaySeconds = 3600.0;
    open(config);
    store->start();
    advance(0.05);
    // From the end of the years that the system counts to its beginning.
    platform.loop.shiftWallClock(-300.0 * 366.0 * 86400.0);
    advance(0.1);
    EXPECT_EQ(runtime().message(), "Starting in 9486723600 seconds");
}

} // namespace velloran
