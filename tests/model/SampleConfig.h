#pragma once

#include "model/AutoClickerConfig.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

namespace velloran::samples {

/// A record in which every field differs from its default.
inline AutoClickerConfig fullConfig() {
    return {
        MouseButton::middle, 0.25, StopMode::manual, 42, 1.5, true, 2.5, HotkeyCombo{0xC0000, 1, "⌃⌥S"}, true, true};
}

/// Any finite double, each bit pattern equally likely.
inline double anyReal(std::mt19937_64& random) {
    double value = 0.0;
    do {
        value = std::bit_cast<double>(random());
    } while (!std::isfinite(value));
    return value;
}

/// A record with random fields, extreme and invalid values included.
inline AutoClickerConfig anyConfig(std::mt19937_64& random) {
    AutoClickerConfig config;
    config.mouseButton = allMouseButtons.at(random() % allMouseButtons.size());
    config.clickIntervalSeconds = anyReal(random);
    config.stopMode = random() % 2 == 0 ? StopMode::manual : StopMode::after_clicks;
    config.maxClicks = random() % 3 == 0 ? std::nullopt : std::optional(static_cast<std::int64_t>(random()));
    config.startDelaySeconds = anyReal(random);
    config.requireStationaryMouse = random() % 2 == 0;
    config.stationarySeconds = anyReal(random);
    if (random() % 2 == 0) {
        config.hotkey =
            HotkeyCombo{random(), static_cast<std::uint32_t>(random()), "⌃\"\\\n\t\x01" + std::to_string(random())};
    }
    config.playClickSound = random() % 2 == 0;
    config.minimizeToTray = random() % 2 == 0;
    return config;
}

} // namespace velloran::samples
