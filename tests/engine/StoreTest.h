#pragma once

#include "engine/AutoClickerStore.h"
#include "fakes/makeStore.h"
#include "hotkeys/HotkeyManager.h"
#include "presets/PresetStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <vector>

namespace velloran {

/// A store on a recording platform in virtual time.
class StoreTest : public testing::Test {
public:
    ~StoreTest() override {
        if (store) {
            store->stop();
        }
        platform.loop.runDue();
        store.reset();
        HotkeyManager::endShared();
    }

    StoreTest(const StoreTest&) = delete;
    StoreTest& operator=(const StoreTest&) = delete;

protected:
    /// What is said of an interval that is out of bounds.
    static constexpr const char* intervalMessage = "Click interval must be between 0.01 and 3600.0 seconds.";

    StoreTest() = default;

    /// Makes the store, with `config` stored before.
    void open(const AutoClickerConfig& config = {}) {
        PresetStore(platform.preferences).saveConfig(config);
        platform.preferences.written.clear();
        platform.preferences.writes = 0;
        platform.journal.clear();
        store = fakes::makeStore(platform);
    }

    /// A configuration that clicks at once, so many times.
    static AutoClickerConfig counted(std::int64_t clicks, double interval = 7.0) {
        AutoClickerConfig config;
        config.clickIntervalSeconds = interval;
        config.maxClicks = clicks;
        return config;
    }

    /// A configuration that clicks until it is stopped.
    static AutoClickerConfig unlimited(double interval = 7.0) {
        AutoClickerConfig config;
        config.clickIntervalSeconds = interval;
        config.stopMode = StopMode::manual;
        return config;
    }

    [[nodiscard]] const AutoClickerRuntime& runtime() const { return store->runtime().get(); }

    [[nodiscard]] ClickerStatus status() const { return runtime().status; }

    /// Puts the store into a status without the way that leads there; two statuses have none. Only the store writes the
    /// record, so everybody else sees it as constant.
    void force(ClickerStatus status) {
        auto& record = const_cast<Published<AutoClickerRuntime>&>(
            store->runtime()); // NOLINT(cppcoreguidelines-pro-type-const-cast)
        record.modify([status](AutoClickerRuntime& runtime) { runtime.status = status; });
    }

    void advance(double seconds) { platform.loop.advance(seconds); }

    /// A press of the registered hotkey, up to whatever it starts.
    void pressHotkey() {
        platform.pressHotKey({HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber});
        platform.loop.runDue();
    }

    /// When clicks were sent, in seconds since the test began.
    [[nodiscard]] std::vector<double> clicks() const {
        std::vector<double> times;
        std::transform(platform.flushTimes.begin(), platform.flushTimes.end(), std::back_inserter(times),
                       [](std::uint64_t time) { return static_cast<double>(time) / 1e9; });
        return times;
    }

    /// Expects clicks at exactly these moments. Dates are no finer than a tenth of a microsecond nowadays.
    void expectClicks(const std::vector<double>& expected) const {
        const auto times = clicks();
        const bool areEqual = std::equal(times.begin(), times.end(), expected.begin(), expected.end(),
                                         [](double time, double wanted) { return std::abs(time - wanted) < 1e-6; });
        EXPECT_TRUE(areEqual) << "clicks at " << testing::PrintToString(times) << "\ninstead of "
                              << testing::PrintToString(expected);
    }

    fakes::RecordingPlatform platform;
    std::shared_ptr<AutoClickerStore> store;
};

} // namespace velloran
