#include "presets/view/PresetsModel.h"

#include "ui/utf8.h"

#include <algorithm>

namespace velloran {

namespace {

QVariantList listOf(const std::vector<Preset>& presets) {
    QVariantList list;
    for (const Preset& preset : presets) {
        list.append(QVariantMap{{"id", text(preset.id.text())}, {"name", text(preset.name)}});
    }
    return list;
}

} // namespace

PresetsModel::PresetsModel(AutoClickerStore& store, QObject* parent) : QObject(parent), store_(store) {}

QVariantList PresetsModel::builtIns() const {
    return listOf(Preset::builtIns());
}

QVariantList PresetsModel::own() const {
    return listOf(store_.presets().get());
}

void PresetsModel::apply(const QString& id) {
    if (const auto preset = presetWith(id)) {
        store_.apply(*preset);
    }
}

void PresetsModel::remove(const QString& id) {
    if (const auto preset = presetWith(id)) {
        store_.deletePreset(*preset);
    }
}

void PresetsModel::saveCurrent(const QString& name) {
    store_.saveCurrentAsPreset(name.toStdString());
}

std::optional<Preset> PresetsModel::presetWith(const QString& id) const {
    const auto wanted = Uuid::fromText(id.toStdString());
    const auto all = store_.allPresets();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Preset& preset) { return preset.id == wanted; });
    return found != all.end() ? std::optional(*found) : std::nullopt;
}

} // namespace velloran
