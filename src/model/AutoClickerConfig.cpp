#include "model/AutoClickerConfig.h"

#include "base/text.h"

#include <utility>

namespace velloran {

namespace {

/// Written so that a value that is not a number is not outside.
template<typename Number>
bool isOutside(Number value, Number lowest, Number highest) {
    return value < lowest || value > highest;
}

std::string secondsMessage(const char* subject, double lowest, double highest) {
    return std::string(subject) + " must be between " + shortestDecimal(lowest) + " and " + shortestDecimal(highest) +
           " seconds.";
}

template<typename Enumeration>
std::optional<Enumeration> asEnumeration(const json::Value& value) {
    const auto text = json::asText(value);
    return text ? fromRawValue<Enumeration>(*text) : std::nullopt;
}

} // namespace

const AutoClickerConfig& AutoClickerConfig::default_() {
    static const AutoClickerConfig config;
    return config;
}

std::optional<std::string> AutoClickerConfig::validationError() const {
    if (isOutside(clickIntervalSeconds, intervalMin, intervalMax)) {
        return secondsMessage("Click interval", intervalMin, intervalMax);
    }
    if (stopMode == StopMode::after_clicks) {
        if (!maxClicks) {
            return "Enter the number of clicks before stopping.";
        }
        if (isOutside(*maxClicks, clicksMin, clicksMax)) {
            return "Total clicks must be between " + decimal(clicksMin) + " and " + decimal(clicksMax) + ".";
        }
    }
    if (isOutside(startDelaySeconds, delayMin, delayMax)) {
        return secondsMessage("Start delay", delayMin, delayMax);
    }
    if (requireStationaryMouse && isOutside(stationarySeconds, stationaryMin, stationaryMax)) {
        return secondsMessage("Stationary duration", stationaryMin, stationaryMax);
    }
    return std::nullopt;
}

json::Value encode(const AutoClickerConfig& config) {
    // Member by member: what the library has of a list of them is lost when there is no memory for the rest.
    json::Value object = json::Value::object();
    object["mouseButton"] = rawValue(config.mouseButton);
    object["clickIntervalSeconds"] = config.clickIntervalSeconds;
    object["stopMode"] = rawValue(config.stopMode);
    object["startDelaySeconds"] = config.startDelaySeconds;
    object["requireStationaryMouse"] = config.requireStationaryMouse;
    object["stationarySeconds"] = config.stationarySeconds;
    object["playClickSound"] = config.playClickSound;
    object["minimizeToTray"] = config.minimizeToTray;
    if (config.maxClicks) {
        object["maxClicks"] = *config.maxClicks;
    }
    if (config.hotkey) {
        object["hotkey"] = encode(*config.hotkey);
    }
    return object;
}

Result<AutoClickerConfig> decodeAutoClickerConfig(const json::Value& value) {
    AutoClickerConfig config;
    json::ObjectReader reader(value);
    reader.required("mouseButton", config.mouseButton, asEnumeration<MouseButton>);
    reader.required("clickIntervalSeconds", config.clickIntervalSeconds, json::asReal);
    reader.required("stopMode", config.stopMode, asEnumeration<StopMode>);
    reader.optional("maxClicks", config.maxClicks, json::asInteger<std::int64_t>);
    reader.required("startDelaySeconds", config.startDelaySeconds, json::asReal);
    reader.required("requireStationaryMouse", config.requireStationaryMouse, json::asBoolean);
    reader.required("stationarySeconds", config.stationarySeconds, json::asReal);
    reader.optional("hotkey", config.hotkey, decodeHotkeyCombo);
    reader.required("playClickSound", config.playClickSound, json::asBoolean);
    reader.required("minimizeToTray", config.minimizeToTray, json::asBoolean);
    if (reader.failure()) {
        return *reader.failure();
    }
    return config;
}

} // namespace velloran
