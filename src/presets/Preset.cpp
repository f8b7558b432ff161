#include "presets/Preset.h"

#include "async/EventLoop.h"
#include "platform/Platform.h"

#include <utility>

namespace velloran {

namespace {

AutoClickerConfig leftClicks(double interval, StopMode stopMode, std::optional<std::int64_t> maxClicks,
                             double startDelay) {
    AutoClickerConfig config;
    config.clickIntervalSeconds = interval;
    config.stopMode = stopMode;
    config.maxClicks = maxClicks;
    config.startDelaySeconds = startDelay;
    return config;
}

std::vector<Preset> makeBuiltIns() {
    AutoClickerConfig afk = leftClicks(30.0, StopMode::manual, std::nullopt, 3.0);
    afk.requireStationaryMouse = true;
    afk.stationarySeconds = 5.0;
    return {
        Preset::make("Steady — 1 click/sec, 100 clicks", leftClicks(1.0, StopMode::after_clicks, 100, 0.0)),
        Preset::make("Rapid — 0.10s, 500 clicks", leftClicks(0.1, StopMode::after_clicks, 500, 1.0)),
        Preset::make("AFK — every 30s, manual stop", std::move(afk)),
    };
}

std::optional<Uuid> asUuid(const json::Value& value) {
    const auto text = json::asText(value);
    return text ? Uuid::fromText(*text) : std::nullopt;
}

std::optional<Date> asDate(const json::Value& value) {
    const auto seconds = json::asReal(value);
    return seconds ? std::optional(Date(*seconds)) : std::nullopt;
}

std::optional<AutoClickerConfig> asConfig(const json::Value& value) {
    auto config = decodeAutoClickerConfig(value);
    return config ? std::optional(std::move(config).value()) : std::nullopt;
}

} // namespace

Preset Preset::make(std::string name, AutoClickerConfig config) {
    return {Uuid::random(), std::move(name), std::move(config), platform::Platform::current().mainLoop.now()};
}

const std::vector<Preset>& Preset::builtIns() {
    static const std::vector<Preset> presets = makeBuiltIns();
    return presets;
}

json::Value encode(const Preset& preset) {
    json::Value object = json::Value::object();
    object["id"] = preset.id.text();
    object["name"] = preset.name;
    object["config"] = encode(preset.config);
    object["createdAt"] = preset.createdAt.secondsSinceReference();
    return object;
}

Result<Preset> decodePreset(const json::Value& value) {
    Preset preset;
    json::ObjectReader reader(value);
    reader.required("id", preset.id, asUuid);
    reader.required("name", preset.name, json::asText);
    reader.required("config", preset.config, asConfig);
    reader.required("createdAt", preset.createdAt, asDate);
    if (reader.failure()) {
        return *reader.failure();
    }
    return preset;
}

} // namespace velloran
