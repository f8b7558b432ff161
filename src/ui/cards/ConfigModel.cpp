#include "ui/cards/ConfigModel.h"

#include "hotkeys/HotkeyPreset.h"
#include "model/summary.h"
#include "ui/utf8.h"

#include <algorithm>

namespace velloran {

namespace {

constexpr std::int64_t defaultClickCount = 100;
constexpr double shortestChosenDelay = 3.0;

} // namespace

ConfigModel::ConfigModel(AutoClickerStore& store, QObject* parent)
    : QObject(parent),
      store_(store),
      subscription_(store.config.stream().subscribe([this](const AutoClickerConfig&) { emit changed(); })) {}

void ConfigModel::setMouseButton(int index) {
    if (index >= 0 && index < static_cast<int>(allMouseButtons.size())) {
        set(&AutoClickerConfig::mouseButton, allMouseButtons[static_cast<std::size_t>(index)]);
    }
}

void ConfigModel::setManual(bool isManual) {
    set(&AutoClickerConfig::stopMode, isManual ? StopMode::manual : StopMode::after_clicks);
    if (!isManual && !config().maxClicks) {
        set(&AutoClickerConfig::maxClicks, defaultClickCount);
    }
}

WholeNumber ConfigModel::clickCount() const {
    return {config().maxClicks.value_or(defaultClickCount)};
}

void ConfigModel::setHasStartDelay(bool hasDelay) {
    store_.config.modify([hasDelay](AutoClickerConfig& config) {
        config.startDelaySeconds = hasDelay ? std::max(config.startDelaySeconds, shortestChosenDelay) : 0.0;
    });
}

QStringList ConfigModel::hotkeyChoices() const {
    QStringList labels;
    for (const HotkeyPreset& preset : HotkeyPreset::all()) {
        labels.append(text(preset.label));
    }
    return labels;
}

QStringList ConfigModel::mouseButtonNames() const {
    QStringList names;
    for (const MouseButton button : allMouseButtons) {
        names.append(text(displayName(button)));
    }
    return names;
}

QString ConfigModel::hotkeyDisplay() const {
    return config().hotkey ? text(config().hotkey->display) : QString();
}

QString ConfigModel::mouseButtonText() const {
    return text(displayName(config().mouseButton));
}

QString ConfigModel::intervalText() const {
    return text(summary::interval(config()));
}

QString ConfigModel::stopText() const {
    return text(summary::stop(config()));
}

QString ConfigModel::hotkeyText() const {
    return text(summary::hotkey(config()));
}

QString ConfigModel::delayText() const {
    return text(summary::delay(config()));
}

QString ConfigModel::stationaryText() const {
    return text(summary::stationaryCheck(config()));
}

void ConfigModel::setHotkey(const QVariant& combo) {
    if (combo.canConvert<HotkeyCombo>()) {
        set(&AutoClickerConfig::hotkey, combo.value<HotkeyCombo>());
    }
}

void ConfigModel::chooseHotkey(int index) {
    const auto& choices = HotkeyPreset::all();
    if (index >= 0 && index < static_cast<int>(choices.size())) {
        set(&AutoClickerConfig::hotkey, choices[static_cast<std::size_t>(index)].combo);
    }
}

void ConfigModel::clearHotkey() {
    set(&AutoClickerConfig::hotkey, std::nullopt);
}

} // namespace velloran
