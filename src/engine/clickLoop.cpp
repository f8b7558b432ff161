#include "engine/AutoClickerStore.h"

#include "base/checked.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

// The click loop of the store: a file of its own, because it is the heart of the program.

namespace velloran {

namespace {

constexpr std::uint64_t countdownStep = 100'000'000;
constexpr std::uint64_t stillnessPoll = 80'000'000;
constexpr std::uint64_t backlogPoll = 2'000'000;

/// The count after which this run ends, if there is one.
std::optional<std::int64_t> clickLimit(const AutoClickerConfig& snapshot) {
    return snapshot.stopMode == StopMode::after_clicks ? snapshot.maxClicks : std::nullopt;
}

std::uint64_t nanoseconds(double seconds) {
    return checkedUInt64(seconds * static_cast<double>(nanosecondsPerSecond));
}

/// How long before it is due a click is handed over. This thread also draws a window and is late now and then; the one
/// that posts does nothing else, and sleeps until the very moment. A 256th of a second: a date holds it exactly, and so
/// whatever was exact as a date stays so.
constexpr std::chrono::nanoseconds usualLead(3'906'250);
static_assert(std::chrono::duration<double>(2 * usualLead).count() <= AutoClickerConfig::intervalMin);

/// What the schedule takes for the present, on both clocks.
struct Present {
    Date date;
    Moment moment;
};

/// Once a click is handed over, its moment is the present until it is past: what is decided ahead of time comes out as
/// if it were decided when that click is posted, even when the wall clock is set in between.
Present presentAfter(Moment handedOver, const EventLoop& loop) {
    const Moment now = loop.monotonicNow();
    const auto ahead = static_cast<double>(nanosecondsBetween(now, handedOver));
    return {loop.now() + ahead / static_cast<double>(nanosecondsPerSecond), std::max(now, handedOver)};
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
    // What the gate says has to hold when the click is posted: a mouse that moved after a hand-over ahead of time would
    // be clicked under.
    const std::chrono::nanoseconds lead = snapshot.requireStationaryMouse ? std::chrono::nanoseconds(0) : usualLead;
    Date nextClick = loop.now();
    // When the next click is due, and until that is known, when the last one was.
    Moment due = loop.monotonicNow();
    while (!hasEnded()) {
        const std::int64_t clicks = store->runtime_.get().clicksCompleted;
        if (limit && clicks >= *limit) {
            store->alter(hasEnded, [](AutoClickerRuntime& record) {
                record.status = ClickerStatus::completed;
                record.nextClickAt.reset();
                record.clicksRemaining = 0;
            });
            co_return;
        }

        // A click is handed over only when the one in front of it is due, so that after a stop one follows at most.
        const Present present = presentAfter(due, loop);
        due = present.moment;
        Moment handOver = due;
        if (nextClick > present.date) {
            due = later(present.moment, nanoseconds(nextClick - present.date));
            // The end of the run is told with its last click, and not before.
            const bool isLast = limit && clicks + 1 == *limit;
            handOver = isLast ? due : std::max(due - lead, present.moment);
            store->alter(hasEnded, [&](AutoClickerRuntime& record) { record.nextClickAt = nextClick; });
        }
        if (const std::uint64_t wait = nanosecondsBetween(loop.monotonicNow(), handOver); wait > 0) {
            co_await taskSleep(wait);
        } else {
            // A loop that is late at every pass would otherwise keep out whatever could stop it.
            co_await taskYield();
        }
        if (hasEnded()) {
            co_return;
        }

        // Clicks that piled up in front of a slow desktop, or of a thread that gets no processor, would go on after a
        // stop, and after the end of the count.
        while (!hasEnded() && store->engine_->isBehind(loop.monotonicNow())) {
            co_await taskSleep(backlogPoll);
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

        store->click(snapshot, run, due);
        nextClick = std::max(nextClick + snapshot.clickIntervalSeconds, presentAfter(due, loop).date);
    }
}

void AutoClickerStore::click(const AutoClickerConfig& snapshot, std::uint64_t run, Moment due) {
    engine_->noteHandedOver(due);
    loop_.keepQuiet(due);
    engineQueue_->asyncAt(due, [engine = engine_, button = engineButton(snapshot.mouseButton)] {
        engine->post(button);
        engine->notePosted();
    });
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
