#include "base/text.h"
#include "hotkeys/HotkeyPreset.h"
#include "model/durations.h"
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
    return text(fixedDecimal(config().clickIntervalSeconds, 2) + " seconds");
}

QString StoreModel::stopText() const {
    if (isManual()) {
        return QStringLiteral("Run until stopped");
    }
    // No count stored reads as none here, though the field offers its default.
    return text(decimal(config().maxClicks.value_or(0)) + " clicks");
}

QString StoreModel::hotkeyText() const {
    return config().hotkey ? hotkeyDisplay() : QStringLiteral("Not set");
}

QString StoreModel::delayText() const {
    return text(formatSeconds(config().startDelaySeconds) + " seconds");
}

QString StoreModel::stationaryText() const {
    return config().requireStationaryMouse ? text(fixedDecimal(config().stationarySeconds, 1) + " seconds")
                                           : QStringLiteral("Off");
}

} // namespace velloran
