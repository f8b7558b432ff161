#include "model/AutoClickerRuntime.h"

#include "base/checked.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace velloran {

namespace {

std::string counted(std::int64_t count, const char* noun) {
    return decimal(count) + " " + noun + (count == 1 ? "" : "s");
}

} // namespace

const AutoClickerRuntime& AutoClickerRuntime::initial() {
    static const AutoClickerRuntime runtime;
    return runtime;
}

std::string AutoClickerRuntime::message() const {
    switch (status) {
    case ClickerStatus::idle:
        return "Clicking is stopped";
    case ClickerStatus::arming:
        return "Preparing to start";
    case ClickerStatus::delayed:
        if (countdownRemaining) {
            const std::int64_t seconds = std::max<std::int64_t>(0, checkedInt(std::ceil(*countdownRemaining)));
            return "Starting in " + counted(seconds, "second");
        }
        return "Delayed start active";
    case ClickerStatus::running:
        if (stationaryWaitActive) {
            return "Waiting for mouse to remain still";
        }
        if (clicksRemaining) {
            // Plural even for a total of one.
            return decimal(clicksCompleted) + " / " + decimal(checkedAdd(clicksCompleted, *clicksRemaining)) +
                   " clicks completed";
        }
        return counted(clicksCompleted, "click") + " completed";
    case ClickerStatus::paused:
        return "Paused — press Start to resume";
    case ClickerStatus::completed:
        return "Completed — reached " + counted(clicksCompleted, "click");
    case ClickerStatus::error:
        return errorMessage.value_or("Unknown error");
    }
    return {};
}

} // namespace velloran
