#pragma once

#include "engine/StoreTest.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

/// One play of a scenario on a platform of its own, in which `act` is called inside one of the notifications.
class Play : public StoreTest {
public:
    using Step = std::function<void(Play&)>;

    struct Scenario {
        std::string name;
        AutoClickerConfig config;
        std::vector<Step> steps;
    };

    /// What was there when `act` had returned.
    struct Moment {
        std::string notification;
        AutoClickerRuntime record;
        ClickerStatus statusBefore = ClickerStatus::idle;
        int clicks = 0;
    };

    /// Goes through the scenario, up to the step in which notification number `place` comes.
    void perform(const Scenario& scenario, int place, std::function<void(Play&)> act) {
        AutoClickerConfig config = scenario.config;
        config.playClickSound = true;
        open(config);
        advance(1.0);
        platform.onPointerRead = [this] {
            // Moves three times, and then again whenever it has been still for a while.
            if (readings_++ % 6 < 3) {
                platform.pointer = platform::Point{platform.pointer->x + 10.0, platform.pointer->y};
            }
        };
        place_ = place;
        act_ = std::move(act);
        attach();
        for (const Step& step : scenario.steps) {
            step(*this);
            if (moment) {
                return;
            }
        }
    }

    static constexpr const char* announcement = "record will change";

    /// Clicks that were handed over to be posted: each one plays its sound in the same turn.
    [[nodiscard]] int handedOver() const { return platform.count("play sound"); }

    void start() { store->start(); }

    void stop() { store->stop(); }

    void edit(const std::function<void(AutoClickerConfig&)>& change) { store->config.modify(change); }

    void trust(bool isTrusted) { platform.isTrusted = isTrusted; }

    void report() { platform.trustChanged(); }

    void refresh() { store->refreshPermission(); }

    using StoreTest::advance;
    using StoreTest::platform;
    using StoreTest::runtime;
    using StoreTest::status;
    using StoreTest::store;

    int notifications = 0;
    /// How often a change of the record was announced, and how often it was made.
    int announced = 0;
    int changed = 0;
    std::optional<Moment> moment;
    std::vector<AutoClickerRuntime> streamed;

private:
    void TestBody() override {}

    void attach() {
        subscriptions_.push_back(store->runtime().observeWillChange([this] {
            ++announced;
            arrive(announcement);
        }));
        subscriptions_.push_back(
            store->runtime().stream().subscribe([this, isFirst = true](const AutoClickerRuntime& record) mutable {
                streamed.push_back(record);
                if (!std::exchange(isFirst, false)) {
                    ++changed;
                    arrive("record changed");
                }
            }));
        subscriptions_.push_back(
            store->hasAccessibilityPermission().observeWillChange([this] { arrive("flag will change"); }));
        subscriptions_.push_back(
            store->hasAccessibilityPermission().stream().subscribe([this, isFirst = true](const bool&) mutable {
                if (!std::exchange(isFirst, false)) {
                    arrive("flag changed");
                }
            }));
    }

    void arrive(const char* notification) {
        if (notifications++ == place_) {
            Moment now{notification, {}, status(), 0};
            act_(*this);
            now.record = runtime();
            now.clicks = handedOver();
            moment = std::move(now);
        }
    }

    int place_ = -1;
    int readings_ = 0;
    std::function<void(Play&)> act_;
    std::vector<Subscription> subscriptions_;
};

} // namespace velloran
