#include "presets/view/PresetsModel.h"

#include <algorithm>

namespace velloran {

namespace {

QVariantList listOf(const std::vector<Preset>& presets) {
    QVariantList list;
    for (const Preset& preset : presets) {
        list.append(QVariantMap{{"id", QString::fromStdString(preset.id.text())},
                                {"name", QString::fromStdString(preset.name)}});
    }
    return list;
}

} // namespace

PresetsModel::PresetsModel(ConfigOwner& owner, QObject* parent) : QObject(parent), owner_(owner) {}

QVariantList PresetsModel::builtIns() const {
    return listOf(Preset::builtIns());
}

QVariantList PresetsModel::own() const {
    return listOf(owner_.presets().get());
}

void PresetsModel::apply(const QString& id) {
    if (const auto preset = presetWith(id)) {
        owner_.apply(*preset);
    }
}

void PresetsModel::remove(const QString& id) {
    if (const auto preset = presetWith(id)) {
        owner_.deletePreset(*preset);
    }
}

void PresetsModel::saveCurrent(const QString& name) {
    owner_.saveCurrentAsPreset(name.toStdString());
}

void PresetsModel::resetToDefaults() {
    owner_.resetToDefaults();
}

std::optional<Preset> PresetsModel::presetWith(const QString& id) const {
    const auto wanted = Uuid::fromText(id.toStdString());
    const auto all = owner_.allPresets();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Preset& preset) { return preset.id == wanted; });
    return found != all.end() ? std::optional(*found) : std::nullopt;
}

} // namespace velloran
