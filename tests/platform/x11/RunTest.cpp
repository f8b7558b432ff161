#include "engine/AutoClickerStore.h"
#include "fakes/RecordingPlatform.h"
#include "harness/observer/ClickReport.h"
#include "hotkeys/HotkeyManager.h"
#include "platform/x11/Desktop.h"
#include "presets/PresetStore.h"

namespace velloran::tests {

using Kind = observer::InputEvent::Kind;

/// Runs of the controller whose clicks its thread posts to the server.
class RunTest : public Desktop {
protected:
    void SetUp() override {
        Desktop::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        openWindow();
        desktop.set(onAnotherConnection());
        AutoClickerConfig config;
        config.clickIntervalSeconds = 0.01;
        config.maxClicks = 50;
        PresetStore presets(platform.preferences);
        presets.saveConfig(config);
        store = AutoClickerStore::create(loop, desktop, platform.sounds(),
                                         std::make_unique<PresetStore>(platform.preferences));
    }

    void TearDown() override {
        if (store) {
            store->stop();
        }
        store.reset();
        HotkeyManager::endShared();
    }

    /// The clicks of a connection of its own, with the permission for them.
    platform::Desktop onAnotherConnection() {
        platform::Desktop parts = platform.desktop.get();
        const auto connected = platform::x11::X11Server::connect(loop, {}, server.displayName().c_str());
        EXPECT_TRUE(connected.ok());
        if (connected) {
            const auto clicks = connected.value()->pointerEvents();
            parts.clicks.part = clicks;
            parts.trust.part = connected.value()->inputTrust(clicks);
        }
        return parts;
    }

    bool waitForClicks(std::size_t number) {
        return until([this, number] {
            return count(Kind::buttonPress, true) >= number && count(Kind::buttonRelease, true) >= number;
        });
    }

    [[nodiscard]] std::size_t counted() const {
        return static_cast<std::size_t>(store->runtime().get().clicksCompleted);
    }

    fakes::RecordingPlatform platform;
    Published<platform::Desktop> desktop{platform::Desktop()};
    std::shared_ptr<AutoClickerStore> store;
};

TEST_F(RunTest, ACountedRunIsThatManyClicks) {
    store->start();
    ASSERT_TRUE(until([this] { return store->runtime().get().status == ClickerStatus::completed; }));
    ASSERT_TRUE(waitForClicks(50));
    settle();
    EXPECT_EQ(buttonEvents(true).size(), 100U);
    EXPECT_TRUE(observer::summarize(buttonEvents(true), 0.0).areInPairs);
}

TEST_F(RunTest, StartsStopsAndOtherConnectionsLoseNoClick) {
    std::size_t before = 0;
    for (std::size_t round = 0; round < 12; ++round) {
        store->start();
        ASSERT_TRUE(waitForClicks(before + 2 + round % 5));
        if (round % 3 == 0) {
            desktop.set(onAnotherConnection());
            ASSERT_TRUE(waitForClicks(before + 8 + round % 5));
        }
        if (round % 4 == 1) {
            before += counted();
            store->start();
            ASSERT_TRUE(waitForClicks(before + 3));
        }
        store->stop();
        before += counted();
        ASSERT_TRUE(waitForClicks(before)) << "round " << round;
    }
    settle();
    EXPECT_EQ(buttonEvents(true).size(), 2 * before);
    EXPECT_TRUE(observer::summarize(buttonEvents(true), 0.0).areInPairs);
}

} // namespace velloran::tests
