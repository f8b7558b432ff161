#include "ui/StoreModel.h"

#include "hotkeys/HotkeyPreset.h"
#include "platform/Platform.h"
#include "ui/utf8.h"

#include <algorithm>
#include <utility>

Q_DECLARE_METATYPE(velloran::HotkeyCombo)

namespace velloran {

namespace {

constexpr std::int64_t defaultClickCount = 100;
constexpr double shortestChosenDelay = 3.0;
/// How long after a click of our own its echo may still reach the window, in seconds.
constexpr double echoTime = 0.15;

QVariantList listOf(const std::vector<Preset>& presets) {
    QVariantList list;
    for (const Preset& preset : presets) {
        list.append(QVariantMap{{"id", text(preset.id.text())}, {"name", text(preset.name)}});
    }
    return list;
}

} // namespace

StoreModel::StoreModel(std::shared_ptr<AutoClickerStore> store, QObject* parent)
    : QObject(parent), store_(std::move(store)), throttle_(platform::Platform::current().mainLoop, [this] { show(); }) {
    shown_ = current();
    subscriptions_.push_back(store_->config.stream().subscribe([this](const AutoClickerConfig&) {
        emit configChanged();
        emit progressChanged();
    }));
    subscriptions_.push_back(store_->presets().stream().subscribe([this](const auto&) { emit presetsChanged(); }));
    subscriptions_.push_back(store_->runtime().stream().subscribe([this](const AutoClickerRuntime& runtime) {
        noteClicks(runtime);
        throttle_.request();
    }));
    subscriptions_.push_back(
        store_->hasAccessibilityPermission().stream().subscribe([this](const bool&) { throttle_.request(); }));
}

template<typename Change>
void StoreModel::change(Change change) {
    store_->config.modify(change);
}

void StoreModel::setMouseButton(int index) {
    if (index >= 0 && index < static_cast<int>(allMouseButtons.size())) {
        change([index](AutoClickerConfig& config) {
            config.mouseButton = allMouseButtons[static_cast<std::size_t>(index)];
        });
    }
}

void StoreModel::setClickIntervalSeconds(double seconds) {
    change([seconds](AutoClickerConfig& config) { config.clickIntervalSeconds = seconds; });
}

void StoreModel::setManual(bool isManual) {
    change([isManual](AutoClickerConfig& config) {
        config.stopMode = isManual ? StopMode::manual : StopMode::after_clicks;
    });
    if (!isManual && !config().maxClicks) {
        change([](AutoClickerConfig& config) { config.maxClicks = defaultClickCount; });
    }
}

ui::WholeNumber StoreModel::clickCount() const {
    return {config().maxClicks.value_or(defaultClickCount)};
}

void StoreModel::setClickCount(ui::WholeNumber count) {
    change([count](AutoClickerConfig& config) { config.maxClicks = count.value; });
}

void StoreModel::setStartDelaySeconds(double seconds) {
    change([seconds](AutoClickerConfig& config) { config.startDelaySeconds = seconds; });
}

void StoreModel::setHasStartDelay(bool hasDelay) {
    change([hasDelay](AutoClickerConfig& config) {
        config.startDelaySeconds = hasDelay ? std::max(config.startDelaySeconds, shortestChosenDelay) : 0.0;
    });
}

void StoreModel::setRequireStationaryMouse(bool isRequired) {
    change([isRequired](AutoClickerConfig& config) { config.requireStationaryMouse = isRequired; });
}

void StoreModel::setStationarySeconds(double seconds) {
    change([seconds](AutoClickerConfig& config) { config.stationarySeconds = seconds; });
}

QVariant StoreModel::hotkey() const {
    return config().hotkey ? QVariant::fromValue(*config().hotkey) : QVariant();
}

void StoreModel::setHotkey(const QVariant& combo) {
    change([&combo](AutoClickerConfig& config) {
        if (combo.canConvert<HotkeyCombo>()) {
            config.hotkey = combo.value<HotkeyCombo>();
        } else {
            config.hotkey.reset();
        }
    });
}

void StoreModel::setPlayClickSound(bool plays) {
    change([plays](AutoClickerConfig& config) { config.playClickSound = plays; });
}

void StoreModel::setMinimizeToTray(bool minimizes) {
    change([minimizes](AutoClickerConfig& config) { config.minimizeToTray = minimizes; });
}

QString StoreModel::headline() const {
    return text(::velloran::headline(shown_.runtime.status));
}

bool StoreModel::isFlying() const {
    switch (shown_.runtime.status) {
    case ClickerStatus::arming:
    case ClickerStatus::delayed:
    case ClickerStatus::running:
        return true;
    default:
        return false;
    }
}

std::optional<RunProgress> StoreModel::runProgress() const {
    return RunProgress::of(shown_.runtime, config());
}

bool StoreModel::showsProgress() const {
    return runProgress().has_value();
}

double StoreModel::progress() const {
    return runProgress().value_or(RunProgress()).fraction();
}

QString StoreModel::progressText() const {
    return text(runProgress().value_or(RunProgress()).text());
}

QVariantList StoreModel::builtInPresets() const {
    return listOf(Preset::builtIns());
}

QVariantList StoreModel::userPresets() const {
    return listOf(store_->presets().get());
}

void StoreModel::start() {
    store_->start();
}

void StoreModel::stop() {
    store_->stop();
}

bool StoreModel::isEchoOfOwnClick() const {
    if (!lastOwnClick_ || runButton_ != MouseButton::left) {
        return false;
    }
    const double age = platform::Platform::current().mainLoop.now() - *lastOwnClick_;
    return age >= 0.0 && age < echoTime;
}

void StoreModel::refreshPermission() {
    store_->refreshPermission();
}

void StoreModel::openAccessibilitySettings() {
    store_->openAccessibilitySettings();
}

void StoreModel::chooseHotkey(int index) {
    const auto& choices = HotkeyPreset::all();
    if (index >= 0 && index < static_cast<int>(choices.size())) {
        change([&](AutoClickerConfig& config) { config.hotkey = choices[static_cast<std::size_t>(index)].combo; });
    }
}

void StoreModel::clearHotkey() {
    setHotkey({});
}

void StoreModel::applyPreset(const QString& id) {
    if (const auto preset = presetWith(id)) {
        store_->apply(*preset);
    }
}

void StoreModel::deletePreset(const QString& id) {
    if (const auto preset = presetWith(id)) {
        store_->deletePreset(*preset);
    }
}

void StoreModel::saveCurrentAsPreset(const QString& name) {
    store_->saveCurrentAsPreset(name.toStdString());
}

void StoreModel::resetToDefaults() {
    store_->resetToDefaults();
}

QByteArray StoreModel::exportConfigData() const {
    return QByteArray::fromStdString(store_->exportConfigData().value_or(Bytes()));
}

bool StoreModel::importConfig(const QByteArray& bytes) {
    return store_->importConfig(bytes.toStdString());
}

StoreModel::Shown StoreModel::current() const {
    const AutoClickerRuntime& runtime = store_->runtime().get();
    return {runtime, text(runtime.message()), store_->hasAccessibilityPermission().get()};
}

void StoreModel::noteClicks(const AutoClickerRuntime& runtime) {
    if (runtime.startedAt != runStartedAt_) {
        // A run keeps the button that the configuration named at its start.
        runStartedAt_ = runtime.startedAt;
        runButton_ = config().mouseButton;
        countedClicks_ = 0;
    }
    if (runtime.clicksCompleted > countedClicks_) {
        countedClicks_ = runtime.clicksCompleted;
        lastOwnClick_ = platform::Platform::current().mainLoop.now();
    }
}

void StoreModel::show() {
    const Shown before = std::exchange(shown_, current());
    if (before.runtime.status != shown_.runtime.status) {
        emit statusChanged();
    }
    if (before.message != shown_.message) {
        emit messageChanged();
    }
    if (before.runtime.clicksCompleted != shown_.runtime.clicksCompleted ||
        before.runtime.status != shown_.runtime.status) {
        emit progressChanged();
    }
    if (before.hasPermission != shown_.hasPermission) {
        emit permissionChanged();
    }
}

std::optional<Preset> StoreModel::presetWith(const QString& id) const {
    const auto wanted = Uuid::fromText(id.toStdString());
    const auto all = store_->allPresets();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Preset& preset) { return preset.id == wanted; });
    return found != all.end() ? std::optional(*found) : std::nullopt;
}

} // namespace velloran
