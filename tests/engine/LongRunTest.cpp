#include "engine/StoreTest.h"

#include <memory>

namespace velloran {

namespace {

// The sanitizers make every step many times slower; the number says nothing more to them than a smaller one does.
#ifdef VELLORAN_SANITIZED
constexpr std::int64_t many = 100'000;
#else
constexpr std::int64_t many = AutoClickerConfig::clicksMax;
#endif

class LongRunTest : public StoreTest {
protected:
    /// Runs `config` to its end without a journal; the moment of the last click in nanoseconds since the start.
    std::uint64_t lastClickOf(const AutoClickerConfig& config) {
        open(config);
        platform.loop.runDue();
        platform.keepsJournal = false;
        std::uint64_t last = 0;
        platform.onFlush = [this, &last] { last = platform.loop.elapsed(); };
        const std::uint64_t begin = platform.loop.elapsed();
        store->start();
        runToItsEnd();
        platform.loop.runDue();
        platform.onFlush = nullptr;
        return last - begin;
    }

    /// However long that is: a thread does its work in a time of its own, and clicks wait for each other.
    void runToItsEnd() {
        while (status() == ClickerStatus::running) {
            EXPECT_TRUE(platform.loop.runNext());
        }
    }
};

} // namespace

TEST_F(LongRunTest, LargestCountIsExactAndDoesNotDrift) {
    // A sixty-fourth of a second is exact as a date, so that any drift would be the loop's own.
    constexpr double interval = 0.015625;
    const std::uint64_t last = lastClickOf(counted(many, interval));
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksCompleted, many);
    EXPECT_EQ(runtime().clicksRemaining, 0);
    EXPECT_EQ(platform.pairedClicks, static_cast<std::uint64_t>(many));
    EXPECT_EQ(platform.postedEvents, 2 * static_cast<std::uint64_t>(many));
    const auto exact = static_cast<std::uint64_t>(many - 1) * std::uint64_t{15'625'000};
    EXPECT_EQ(last, exact);
}

TEST_F(LongRunTest, ShortestIntervalKeepsItsPaceAsFarAsDatesAreFine) {
    constexpr std::int64_t clicks = 100'000;
    const auto last = static_cast<double>(lastClickOf(counted(clicks, AutoClickerConfig::intervalMin)));
    EXPECT_EQ(platform.pairedClicks, static_cast<std::uint64_t>(clicks));
    // A date is a multiple of 2^-23 seconds nowadays; each step may be off by half of that.
    const double exact = static_cast<double>(clicks - 1) * 1e7;
    EXPECT_NEAR(last, exact, static_cast<double>(clicks) * 0x1p-24 * 1e9);
}

TEST_F(LongRunTest, ClicksReachARealThreadInOrderAndComplete) {
    constexpr std::int64_t clicks = 20'000;
    PresetStore(platform.preferences).saveConfig(counted(clicks, 0.01));
    platform.keepsJournal = false;
    platform.loop.usesThreads = true;
    store = fakes::makeStore(platform);
    store->start();
    runToItsEnd();
    EXPECT_EQ(status(), ClickerStatus::completed);
    EXPECT_EQ(runtime().clicksCompleted, clicks);
    store.reset(); // waits for the thread
    EXPECT_EQ(platform.pairedClicks, static_cast<std::uint64_t>(clicks));
    EXPECT_EQ(platform.postedEvents, 2 * static_cast<std::uint64_t>(clicks));
}

TEST_F(LongRunTest, DropWithAThreadStillPostsWhatWasHandedOver) {
    for (int round = 0; round < 50; ++round) {
        platform.keepsJournal = false;
        platform.loop.usesThreads = true;
        store = fakes::makeStore(platform);
        store->config.set(counted(7, 0.01));
        store->start();
        runToItsEnd();
        store.reset();
        ASSERT_EQ(platform.pairedClicks, static_cast<std::uint64_t>(7 * (round + 1)));
    }
}

} // namespace velloran
