#include "hotkeys/HotkeyPreset.h"
#include "model/summary.h"
#include "ui/StoreModel.h"
#include "ui/utf8.h"

// What the store model says in words: names to choose from, and the configuration as the summary tells it.

namespace velloran {

QStringList StoreModel::hotkeyChoices() const {
    QStringList labels;
    for (const HotkeyPreset& preset : HotkeyPreset::all()) {
        labels.append(text(preset.label));
    }
    return labels;
}

QStringList StoreModel::mouseButtonNames() const {
    QStringList names;
    for (const MouseButton button : allMouseButtons) {
        names.append(text(displayName(button)));
    }
    return names;
}

QString StoreModel::hotkeyDisplay() const {
    return config().hotkey ? text(config().hotkey->display) : QString();
}

QString StoreModel::mouseButtonText() const {
    return text(displayName(config().mouseButton));
}

QString StoreModel::intervalText() const {
    return text(summary::interval(config()));
}

QString StoreModel::stopText() const {
    return text(summary::stop(config()));
}

QString StoreModel::hotkeyText() const {
    return text(summary::hotkey(config()));
}

QString StoreModel::delayText() const {
    return text(summary::delay(config()));
}

QString StoreModel::stationaryText() const {
    return text(summary::stationaryCheck(config()));
}

} // namespace velloran
