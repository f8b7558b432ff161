#pragma once

#include "base/Bytes.h"
#include "base/Result.h"
#include "model/AutoClickerConfig.h"
#include "platform/Preferences.h"
#include "presets/Preset.h"

#include <string>
#include <vector>

namespace velloran {

/// Keeps the configuration and the user's own presets in the preferences, and turns a configuration into an export file
/// and back. Reading and saving never fail towards the caller. Main thread.
class PresetStore {
public:
    /// `defaults` must outlive this object.
    explicit PresetStore(platform::Preferences& defaults);

    PresetStore(const PresetStore&) = delete;
    PresetStore& operator=(const PresetStore&) = delete;

    /// The stored configuration as it is; the default one when there is none or it cannot be read.
    [[nodiscard]] AutoClickerConfig loadConfig() const;

    /// Stores the configuration. One that has no JSON form leaves the stored one in place.
    void saveConfig(const AutoClickerConfig& config);

    /// The user's presets in order; none when there are none or when any of them cannot be read.
    [[nodiscard]] std::vector<Preset> loadPresets() const;

    /// Replaces the whole stored list. A list that has no JSON form leaves the stored one in place.
    void savePresets(const std::vector<Preset>& presets);

    /// The bytes of an export file: the configuration's JSON object, indented, with sorted keys.
    [[nodiscard]] Result<Bytes> exportConfig(const AutoClickerConfig& config) const;

    /// The configuration in the bytes of an export file.
    [[nodiscard]] Result<AutoClickerConfig> importConfig(const Bytes& from) const;

private:
    platform::Preferences& defaults_;
    const std::string configKey_ = "velloran.config";
    const std::string presetsKey_ = "velloran.presets";
};

} // namespace velloran
