#include "engine/AutoClickerStore.h"

#include "base/checked.h"

#include <algorithm>
#include <cmath>
#include <utility>

// The click loop of the store: a file of its own, because it is the heart of the program.

namespace velloran {

namespace {

constexpr std::uint64_t countdownStep = 100'000'000;
constexpr std::uint64_t stillnessPoll = 80'000'000;

/// The count after which this run ends, if there is one.
std::optional<std::int64_t> clickLimit(const AutoClickerConfig& snapshot) {
    return snapshot.stopMode == StopMode::after_clicks ? snapshot.maxClicks : std::nullopt;
}

std::uint64_t nanoseconds(double seconds) {
    return checkedUInt64(seconds * static_cast<double>(nanosecondsPerSecond));
}

} // namespace

Task AutoClickerStore::runClickLoop(EventLoop& loop, std::weak_ptr<AutoClickerStore> weakStore,
                                    AutoClickerConfig snapshot, std::uint64_t run) {
    const std::shared_ptr<AutoClickerStore> store = weakStore.lock();
    if (!store) {
        co_return;
    }
    const Task::Cancellation cancellation = co_await taskCancellation();
    const auto hasEnded = [&cancellation] { return cancellation.isRequested(); };

    if (snapshot.startDelaySeconds > 0) {
        const Date deadline = loop.now() + snapshot.startDelaySeconds;
        while (loop.now() < deadline && !hasEnded()) {
            const double remaining = std::max(deadline - loop.now(), 0.0);
            store->alter(hasEnded, [&](AutoClickerRuntime& record) { record.countdownRemaining = remaining; });
            co_await taskSleep(countdownStep);
        }
        store->alter(hasEnded, [](AutoClickerRuntime& record) { record.countdownRemaining.reset(); });
        store->alter(hasEnded, [](AutoClickerRuntime& record) { record.status = ClickerStatus::running; });
    }

    const std::optional<std::int64_t> limit = clickLimit(snapshot);
    Date nextClick = loop.now();
    while (!hasEnded()) {
        if (limit && store->runtime_.get().clicksCompleted >= *limit) {
            store->alter(hasEnded, [](AutoClickerRuntime& record) {
                record.status = ClickerStatus::completed;
                record.nextClickAt.reset();
                record.clicksRemaining = 0;
            });
            co_return;
        }

        const Date now = loop.now();
        if (nextClick > now) {
            const std::uint64_t wait = nanoseconds(nextClick - now);
            store->alter(hasEnded, [&](AutoClickerRuntime& record) { record.nextClickAt = nextClick; });
            co_await taskSleep(wait);
        } else {
            // A loop that is late at every pass would otherwise keep out whatever could stop it.
            co_await taskYield();
        }
        if (hasEnded()) {
            co_return;
        }

        // The gate stands directly before the click: what matters is that the mouse is still at that moment.
        if (snapshot.requireStationaryMouse) {
            store->alter(hasEnded, [](AutoClickerRuntime& record) { record.stationaryWaitActive = true; });
            bool hasWaited = false;
            while (!hasEnded() && !store->mouseTracker_.hasBeenStationary(snapshot.stationarySeconds)) {
                hasWaited = true;
                co_await taskSleep(stillnessPoll);
            }
            if (!store->alter(hasEnded, [](AutoClickerRuntime& record) { record.stationaryWaitActive = false; })) {
                co_return;
            }
            if (hasWaited) {
                // The schedule starts anew from here, so that a long wait is not followed by a burst.
                nextClick = loop.now();
            }
        }

        store->click(snapshot, run);
        nextClick = std::max(nextClick + snapshot.clickIntervalSeconds, loop.now());
    }
}

void AutoClickerStore::click(const AutoClickerConfig& snapshot, std::uint64_t run) {
    engineQueue_->async([engine = engine_, button = engineButton(snapshot.mouseButton)] { engine->post(button); });
    if (snapshot.playClickSound) {
        soundPlayer_.playClickTick();
    }
    // The click is on its way, so it counts even when an observer stops the run; but not in the record of a new run.
    const auto isOtherRun = [&] { return run_ != run; };
    alter(isOtherRun,
          [](AutoClickerRuntime& record) { record.clicksCompleted = checkedAdd(record.clicksCompleted, 1); });
    if (const auto limit = clickLimit(snapshot)) {
        alter(isOtherRun, [&](AutoClickerRuntime& record) {
            record.clicksRemaining = std::max<std::int64_t>(checkedSubtract(*limit, record.clicksCompleted), 0);
        });
    }
}

} // namespace velloran
