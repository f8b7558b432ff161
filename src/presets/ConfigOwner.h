#pragma once

#include "async/Published.h"
#include "base/Bytes.h"
#include "presets/Preset.h"

#include <optional>
#include <string>
#include <vector>

namespace velloran {

/// Who owns the configuration and the user's presets, seen from those that keep and bring configurations. Main thread.
class ConfigOwner {
public:
    ConfigOwner() = default;
    ConfigOwner(const ConfigOwner&) = delete;
    ConfigOwner& operator=(const ConfigOwner&) = delete;
    virtual ~ConfigOwner() = default;

    /// The user's own presets, in order.
    [[nodiscard]] virtual const Published<std::vector<Preset>>& presets() const = 0;

    /// The built-in presets followed by the user's.
    [[nodiscard]] virtual std::vector<Preset> allPresets() const = 0;

    /// Takes over all of the preset's configuration but its hotkey.
    virtual void apply(const Preset& preset) = 0;

    /// Appends a preset of the current configuration, under the name as it is.
    virtual void saveCurrentAsPreset(std::string named) = 0;

    /// Removes the user's presets with this one's identifier.
    virtual void deletePreset(const Preset& preset) = 0;

    /// Goes back to the default configuration; the hotkey stays.
    virtual void resetToDefaults() = 0;

    /// The bytes of an export file; nothing when the configuration has no JSON form.
    [[nodiscard]] virtual std::optional<Bytes> exportConfigData() const = 0;

    /// Takes over the configuration in an export file, hotkey included. False, and no change, when it cannot be read.
    virtual bool importConfig(const Bytes& from) = 0;
};

} // namespace velloran
