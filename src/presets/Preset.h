#pragma once

#include "base/Date.h"
#include "base/Uuid.h"
#include "model/AutoClickerConfig.h"

#include <string>
#include <vector>

namespace velloran {

/// A named configuration. Two presets with the same name and configuration, made at different times, are different.
struct Preset {
    Uuid id;
    std::string name;
    /// All of it, the hotkey included, though applying a preset leaves the user's hotkey alone.
    AutoClickerConfig config;
    Date createdAt;

    /// A new preset with a fresh identifier, made now.
    static Preset make(std::string name, AutoClickerConfig config);

    /// The three that come with the program, in order. Built on first use and kept; never stored.
    static const std::vector<Preset>& builtIns();

    friend bool operator==(const Preset&, const Preset&) = default;
};

/// The JSON object of a preset.
json::Value encode(const Preset& preset);

/// Reads such an object strictly.
Result<Preset> decodePreset(const json::Value& value);

} // namespace velloran
