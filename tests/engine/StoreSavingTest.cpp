#include "engine/StoreTest.h"

#include <limits>
#include <string>
#include <vector>

namespace velloran {

namespace {

constexpr const char* configKey = "velloran.config";

class StoreSavingTest : public StoreTest {
protected:
    void edit(double interval) {
        store->config.modify([interval](AutoClickerConfig& config) { config.clickIntervalSeconds = interval; });
    }

    [[nodiscard]] int writes() const { return platform.preferences.writes; }

    [[nodiscard]] double storedInterval() {
        return PresetStore(platform.preferences).loadConfig().clickIntervalSeconds;
    }
};

} // namespace

TEST_F(StoreSavingTest, NewStoreSavesOnceAfterAQuarterOfASecond) {
    open(unlimited(3.0));
    advance(0.249);
    EXPECT_EQ(writes(), 0);
    advance(0.001);
    EXPECT_EQ(platform.preferences.written, std::vector<std::string>{configKey});
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig(), unlimited(3.0));
    advance(3600.0);
    EXPECT_EQ(writes(), 1);
}

TEST_F(StoreSavingTest, EditIsSavedAQuarterOfASecondLater) {
    open();
    advance(1.0);
    edit(2.0);
    advance(0.249);
    EXPECT_EQ(writes(), 1);
    advance(0.001);
    EXPECT_EQ(writes(), 2);
    EXPECT_EQ(storedInterval(), 2.0);
}

TEST_F(StoreSavingTest, BurstIsSavedOnceWithItsLastValue) {
    open();
    advance(1.0);
    for (int step = 1; step <= 20; ++step) {
        edit(step);
        advance(0.1);
    }
    EXPECT_EQ(writes(), 1);
    advance(0.15);
    EXPECT_EQ(writes(), 2);
    EXPECT_EQ(storedInterval(), 20.0);
}

TEST_F(StoreSavingTest, TwoBurstsWithinAQuarterOfASecondAreOne) {
    open();
    advance(1.0);
    edit(2.0);
    edit(3.0);
    advance(0.24);
    edit(4.0);
    edit(5.0);
    advance(0.24);
    EXPECT_EQ(writes(), 1);
    advance(0.01);
    EXPECT_EQ(writes(), 2);
    EXPECT_EQ(storedInterval(), 5.0);
    advance(10.0);
    EXPECT_EQ(writes(), 2);
}

TEST_F(StoreSavingTest, EqualValueIsSavedAgain) {
    open();
    advance(1.0);
    store->config.set(store->config.get());
    advance(0.25);
    EXPECT_EQ(writes(), 2);
}

TEST_F(StoreSavingTest, ChangeMeantToBeSavedIsTheOneThatWasDelivered) {
    open();
    advance(1.0);
    edit(2.0);
    advance(0.2499);
    ASSERT_TRUE(platform.loop.runNext()) << "the end of the quarter of a second";
    EXPECT_EQ(writes(), 1) << "which only schedules the saving";
    edit(3.0);
    platform.loop.runDue();
    EXPECT_EQ(writes(), 2);
    EXPECT_EQ(storedInterval(), 2.0);
    advance(0.25);
    EXPECT_EQ(storedInterval(), 3.0);
}

TEST_F(StoreSavingTest, SavingGoesOnDuringARun) {
    open(unlimited());
    store->start();
    advance(1.0);
    edit(2.0);
    advance(0.25);
    EXPECT_EQ(storedInterval(), 2.0);
    advance(10.0);
    expectClicks({0.0, 7.0});
}

TEST_F(StoreSavingTest, RunItselfSavesNothing) {
    open(counted(50, 0.1));
    advance(1.0);
    const int before = writes();
    store->start();
    advance(60.0);
    store->stop();
    EXPECT_EQ(writes(), before);
}

TEST_F(StoreSavingTest, ConfigurationWithoutAJsonFormLeavesTheStoredOne) {
    open(unlimited(3.0));
    advance(1.0);
    edit(std::numeric_limits<double>::quiet_NaN());
    advance(1.0);
    EXPECT_EQ(writes(), 1);
    EXPECT_EQ(storedInterval(), 3.0);
    edit(4.0);
    advance(1.0);
    EXPECT_EQ(storedInterval(), 4.0);
}

TEST_F(StoreSavingTest, FailingSaveIsSilent) {
    open(unlimited(3.0));
    advance(1.0);
    platform.journal.clear();
    platform.preferences.isReadOnly = true;
    edit(4.0);
    advance(1.0);
    EXPECT_EQ(storedInterval(), 3.0);
    EXPECT_EQ(store->config.get().clickIntervalSeconds, 4.0);
    EXPECT_EQ(status(), ClickerStatus::idle);
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(StoreSavingTest, InvalidConfigurationIsSavedAsItIs) {
    open();
    edit(0.0);
    advance(0.25);
    EXPECT_EQ(storedInterval(), 0.0);
}

} // namespace velloran
