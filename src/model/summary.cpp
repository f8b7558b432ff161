#include "model/summary.h"

#include "base/text.h"
#include "model/durations.h"

namespace velloran::summary {

std::string interval(const AutoClickerConfig& config) {
    return fixedDecimal(config.clickIntervalSeconds, 2) + " seconds";
}

std::string stop(const AutoClickerConfig& config) {
    if (config.stopMode == StopMode::manual) {
        return "Run until stopped";
    }
    // The field offers its default where no count is stored; here it reads as none.
    return decimal(config.maxClicks.value_or(0)) + " clicks";
}

std::string hotkey(const AutoClickerConfig& config) {
    return config.hotkey ? config.hotkey->display : "Not set";
}

std::string delay(const AutoClickerConfig& config) {
    return formatSeconds(config.startDelaySeconds) + " seconds";
}

std::string stationaryCheck(const AutoClickerConfig& config) {
    return config.requireStationaryMouse ? fixedDecimal(config.stationarySeconds, 1) + " seconds" : "Off";
}

} // namespace velloran::summary
