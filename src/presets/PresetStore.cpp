#include "presets/PresetStore.h"

#include <utility>

namespace velloran {

namespace {

/// The configuration, and the hotkey in it.
constexpr std::size_t configDepth = 2;

Result<AutoClickerConfig> readConfig(const Bytes& bytes) {
    const auto value = json::parseRecord(bytes, configDepth);
    if (!value) {
        return value.error();
    }
    return decodeAutoClickerConfig(value.value());
}

} // namespace

PresetStore::PresetStore(platform::Preferences& defaults) : defaults_(defaults) {}

AutoClickerConfig PresetStore::loadConfig() const {
    const auto bytes = defaults_.bytes(configKey_);
    if (!bytes) {
        return AutoClickerConfig::default_();
    }
    auto config = readConfig(*bytes);
    return config ? std::move(config).value() : AutoClickerConfig::default_();
}

void PresetStore::saveConfig(const AutoClickerConfig& config) {
    if (const auto bytes = json::write(encode(config), json::Layout::compact)) {
        defaults_.setBytes(configKey_, bytes.value());
    }
}

std::vector<Preset> PresetStore::loadPresets() const {
    const auto bytes = defaults_.bytes(presetsKey_);
    if (!bytes) {
        return {};
    }
    const auto array = json::parse(*bytes);
    if (!array || !array.value().is_array()) {
        return {};
    }
    std::vector<Preset> presets;
    for (const json::Value& element : array.value()) {
        auto preset = decodePreset(element);
        if (!preset) {
            // All or nothing: a list with holes would look whole.
            return {};
        }
        presets.push_back(std::move(preset).value());
    }
    return presets;
}

void PresetStore::savePresets(const std::vector<Preset>& presets) {
    json::Value array = json::Value::array();
    for (const Preset& preset : presets) {
        array.push_back(encode(preset));
    }
    if (const auto bytes = json::write(array, json::Layout::compact)) {
        defaults_.setBytes(presetsKey_, bytes.value());
    }
}

Result<Bytes> PresetStore::exportConfig(const AutoClickerConfig& config) const {
    return json::write(encode(config), json::Layout::pretty);
}

Result<AutoClickerConfig> PresetStore::importConfig(const Bytes& from) const {
    return readConfig(from);
}

} // namespace velloran
