#include "engine/StoreTest.h"

#include <string>
#include <vector>

namespace velloran {

namespace {

using Journal = std::vector<std::string>;

class ClickLoopSoundTest : public StoreTest {
protected:
    void run(const AutoClickerConfig& config) {
        open(config);
        platform.loop.runDue();
        store->start();
    }
};

} // namespace

TEST_F(ClickLoopSoundTest, PlaysOnTheMainThreadBesideEachClick) {
    AutoClickerConfig config = counted(2, 1.0);
    config.playClickSound = true;
    run(config);
    platform.journal.clear();
    advance(1.0);
    const Journal onePass{
        "stop sound", "play sound", "read location", "post 1 button 0 at 300.0,200.0", "post 2 button 0 at 300.0,200.0",
        "flush"};
    Journal expected = onePass;
    expected.insert(expected.end(), onePass.begin(), onePass.end());
    EXPECT_EQ(platform.journal, expected);
}

TEST_F(ClickLoopSoundTest, ComesBeforeTheCount) {
    AutoClickerConfig config = counted(1);
    config.playClickSound = true;
    run(config);
    platform.journal.clear();
    const Subscription watching = store->runtime().stream().subscribe([this](const AutoClickerRuntime& record) {
        platform.journal.push_back("count " + std::to_string(record.clicksCompleted));
    });
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(platform.journal, Journal{"count 0"}) << "the first step only gives the others a turn";
    ASSERT_TRUE(platform.loop.runNext());
    EXPECT_EQ(platform.journal, (Journal{"count 0", "stop sound", "play sound", "count 1", "count 1", "count 1"}));
}

TEST_F(ClickLoopSoundTest, NoSoundUnlessAskedFor) {
    run(counted(2));
    advance(10.0);
    EXPECT_EQ(platform.count("play sound"), 0);
}

} // namespace velloran
