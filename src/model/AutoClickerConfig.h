#pragma once

#include "base/strictJson.h"
#include "hotkeys/HotkeyCombo.h"
#include "model/MouseButton.h"
#include "model/StopMode.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran {

/// How to click: everything the user sets. A record may hold values that a run refuses; `validationError` tells.
struct AutoClickerConfig {
    /// Bounds, all inclusive. Times in seconds.
    static constexpr double intervalMin = 0.01;
    static constexpr double intervalMax = 3600.0;
    static constexpr std::int64_t clicksMin = 1;
    static constexpr std::int64_t clicksMax = 10'000'000;
    static constexpr double delayMin = 0.0;
    static constexpr double delayMax = 3600.0;
    static constexpr double stationaryMin = 0.1;
    static constexpr double stationaryMax = 3600.0;

    MouseButton mouseButton = MouseButton::left;
    /// From one click to the next, in seconds.
    double clickIntervalSeconds = 7.0;
    StopMode stopMode = StopMode::after_clicks;
    /// Clicks before stopping; absent when no count was entered.
    std::optional<std::int64_t> maxClicks = 100;
    /// Countdown before the first click, in seconds; 0 means none.
    double startDelaySeconds = 0.0;
    /// Click only while the pointer has been still.
    bool requireStationaryMouse = false;
    /// How long it must have been still, in seconds.
    double stationarySeconds = 1.0;
    /// The global start/stop shortcut.
    std::optional<HotkeyCombo> hotkey;
    /// A short sound at each click.
    bool playClickSound = false;
    /// Kept with the rest; nothing acts on it.
    bool minimizeToTray = false;

    /// The record with all defaults.
    static const AutoClickerConfig& default_();

    /// Why a run with this record is refused: the first thing that is wrong, in words for the user. Absent when nothing
    /// is. A value that is not a number counts as within its bounds.
    [[nodiscard]] std::optional<std::string> validationError() const;

    /// Whether there is no validation error.
    [[nodiscard]] bool isValid() const { return !validationError(); }

    friend bool operator==(const AutoClickerConfig&, const AutoClickerConfig&) = default;
};

/// The JSON object of a record, under its field names; absent fields are left out.
json::Value encode(const AutoClickerConfig& config);

/// Reads such an object strictly: nothing takes its default, unknown members are ignored, and bounds are not checked.
Result<AutoClickerConfig> decodeAutoClickerConfig(const json::Value& value);

} // namespace velloran
