#include "model/RunProgress.h"

#include "base/text.h"

#include <algorithm>

namespace velloran {

std::optional<RunProgress> RunProgress::of(const AutoClickerRuntime& runtime, const AutoClickerConfig& config) {
    if (runtime.status != ClickerStatus::running || config.stopMode != StopMode::after_clicks || !config.maxClicks) {
        return std::nullopt;
    }
    return RunProgress{runtime.clicksCompleted, *config.maxClicks};
}

double RunProgress::fraction() const {
    return total > 0 ? std::clamp(static_cast<double>(completed) / static_cast<double>(total), 0.0, 1.0) : 0.0;
}

std::string RunProgress::text() const {
    return decimal(completed) + " / " + decimal(total) + " clicks completed";
}

} // namespace velloran
