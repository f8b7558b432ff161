#include "engine/AutoClickerStore.h"

#include "engine/PermissionChecker.h"
#include "hotkeys/HotkeyManager.h"
#include "platform/InputTrust.h"

#include <algorithm>
#include <utility>

namespace velloran {

namespace {

constexpr std::uint64_t saveDelay = 250'000'000;

} // namespace

std::shared_ptr<AutoClickerStore> AutoClickerStore::create(EventLoop& loop, const Published<platform::Desktop>& desktop,
                                                           platform::SystemSounds& sounds,
                                                           std::unique_ptr<PresetStore> presetStore) {
    auto store = std::make_shared<AutoClickerStore>(Private(), loop, desktop, sounds, std::move(presetStore));
    store->connect();
    return store;
}

AutoClickerStore::AutoClickerStore(Private, EventLoop& loop, const Published<platform::Desktop>& desktop,
                                   platform::SystemSounds& sounds, std::unique_ptr<PresetStore> presetStore)
    : config(presetStore->loadConfig()),
      loop_(loop),
      desktop_(desktop),
      parts_(desktop.get()),
      runtime_(AutoClickerRuntime::initial()),
      presets_(presetStore->loadPresets()),
      hasAccessibilityPermission_(PermissionChecker::isAccessibilityTrusted()),
      engine_(std::make_shared<ClickEngine>(parts_.clicks.part)),
      mouseTracker_(loop, desktop),
      hotkey_(HotkeyManager::shared()),
      presetStore_(std::move(presetStore)),
      soundPlayer_(sounds),
      engineQueue_(loop_.makeSerialQueue("velloran.engine")) {}

AutoClickerStore::~AutoClickerStore() = default;

void AutoClickerStore::connect() {
    // Both streams begin with the current value: it is saved once, and its hotkey registered, without a further step.
    saveCancellable_ = config.stream()
                           .debounce(loop_, saveDelay)
                           .subscribe([weak = weak_from_this(), &loop = loop_](const AutoClickerConfig& value) {
                               loop.post([weak, value] {
                                   if (const auto store = weak.lock()) {
                                       store->presetStore_->saveConfig(value);
                                   }
                               });
                           });
    cancellables_.push_back(
        config.stream()
            .map([](const AutoClickerConfig& value) { return value.hotkey; })
            .removeDuplicates()
            .subscribe([weak = weak_from_this(), &loop = loop_](const std::optional<HotkeyCombo>& combo) {
                loop.post([weak, combo] {
                    if (const auto store = weak.lock()) {
                        store->applyHotkey(combo);
                    }
                });
            }));
    listenToTrust();
    cancellables_.push_back(desktop_.stream().subscribe([weak = weak_from_this()](const platform::Desktop& desktop) {
        if (const auto store = weak.lock()) {
            store->follow(desktop);
        }
    }));
}

void AutoClickerStore::follow(const platform::Desktop& desktop) {
    const platform::Desktop before = std::exchange(parts_, desktop);
    if (before.clicks.part != parts_.clicks.part) {
        auto ending = std::exchange(engine_, std::make_shared<ClickEngine>(parts_.clicks.part));
        // Behind the last click that is to be posted with it, and back to this thread: that is where it ends.
        engineQueue_->async([ending = std::move(ending), &loop = loop_]() mutable {
            loop.postFromAnyThread([ending = std::move(ending)] {});
        });
    }
    if (before.hotKeys.part != parts_.hotKeys.part || before.hotKeys.isAwaited != parts_.hotKeys.isAwaited) {
        applyHotkey(config.get().hotkey);
    }
    if (before.trust.part != parts_.trust.part) {
        if (before.trust.part) {
            before.trust.part->onChanged({});
        }
        listenToTrust();
    }
    if (before.clicks.part != parts_.clicks.part || before.trust.part != parts_.trust.part) {
        recheckPermission();
        if (std::exchange(isPromptDue_, false)) {
            refreshPermission();
        }
    }
}

void AutoClickerStore::listenToTrust() {
    if (parts_.trust.part) {
        parts_.trust.part->onChanged([weak = weak_from_this()] {
            if (const auto store = weak.lock()) {
                store->recheckPermission();
            }
        });
    }
}

std::vector<Preset> AutoClickerStore::allPresets() const {
    std::vector<Preset> all = Preset::builtIns();
    all.insert(all.end(), presets_.get().begin(), presets_.get().end());
    return all;
}

void AutoClickerStore::toggleStartStop() {
    if (isActive(runtime_.get().status)) {
        stop();
    } else {
        start();
    }
}

void AutoClickerStore::start() {
    std::uint64_t order = orders_;
    const auto isOvertaken = [&] { return orders_ != order; };
    const auto refuse = [&](const std::string& message) {
        return alter(isOvertaken, [&](AutoClickerRuntime& runtime) {
            runtime.status = ClickerStatus::error;
            runtime.errorMessage = message;
        });
    };
    if (const auto invalid = config.get().validationError()) {
        refuse(*invalid);
        return;
    }
    if (!PermissionChecker::isAccessibilityTrusted()) {
        showPermission(false);
        if (refuse(PermissionChecker::permissionErrorMessage())) {
            PermissionChecker::openAccessibilitySettings();
        }
        return;
    }
    showPermission(true);
    const AutoClickerConfig& settings = config.get();
    const bool hasDelay = settings.startDelaySeconds > 0;
    AutoClickerRuntime fresh;
    fresh.status = hasDelay ? ClickerStatus::delayed : ClickerStatus::running;
    fresh.clicksRemaining = settings.stopMode == StopMode::after_clicks ? settings.maxClicks : std::nullopt;
    fresh.startedAt = loop_.now();
    fresh.countdownRemaining = hasDelay ? std::optional(settings.startDelaySeconds) : std::nullopt;
    const bool isWanted = alter(isOvertaken, [&](AutoClickerRuntime& runtime) {
        runtime = std::move(fresh);
        order = ++orders_;
        run_ = order;
    });
    if (isWanted && !hasAccessibilityPermission_.get()) {
        // Gone while the start was told of.
        stop();
    } else if (isWanted) {
        mouseTracker_.reset();
        startLoop();
    }
}

void AutoClickerStore::stop() {
    const std::uint64_t order = ++orders_;
    cancelLoop();
    if (runtime_.get().status == ClickerStatus::completed) {
        return;
    }
    alter([&] { return orders_ != order; },
          [](AutoClickerRuntime& runtime) {
              runtime.status = ClickerStatus::idle;
              runtime.nextClickAt.reset();
              runtime.countdownRemaining.reset();
              runtime.stationaryWaitActive = false;
          });
}

void AutoClickerStore::startLoop() {
    cancelLoop();
    loopTask_ = runClickLoop(loop_, weak_from_this(), config.get(), run_);
}

void AutoClickerStore::cancelLoop() {
    if (loopTask_) {
        loopTask_->cancel();
        loopTask_.reset();
    }
}

void AutoClickerStore::refreshPermission() {
    if (!PermissionChecker::isAccessibilityTrusted()) {
        PermissionChecker::requestAccessibilityPrompt();
        isPromptDue_ = !parts_.clicks.part || !parts_.trust.part;
    }
    showPermission(PermissionChecker::isAccessibilityTrusted());
    if (hasAccessibilityPermission_.get()) {
        clearError();
    }
}

void AutoClickerStore::recheckPermission() {
    const bool isTrusted = PermissionChecker::isAccessibilityTrusted();
    const bool isRunUnderWay = loopTask_ && !loopTask_->isFinished();
    if (!isTrusted && isRunUnderWay) {
        stop();
    }
    showPermission(isTrusted);
    if (hasAccessibilityPermission_.get() &&
        runtime_.get().errorMessage == PermissionChecker::permissionErrorMessage()) {
        clearError();
    }
}

void AutoClickerStore::clearError() {
    alter([this] { return runtime_.get().status != ClickerStatus::error; },
          [](AutoClickerRuntime& runtime) {
              runtime.status = ClickerStatus::idle;
              runtime.errorMessage.reset();
          });
}

void AutoClickerStore::showPermission(bool isTrusted) {
    const std::uint64_t finding = ++findings_;
    hasAccessibilityPermission_.modify([&](bool& isShown) {
        if (findings_ != finding) {
            return false;
        }
        isShown = isTrusted;
        return true;
    });
}

// A member, because the views know the store only.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void AutoClickerStore::openAccessibilitySettings() {
    PermissionChecker::openAccessibilitySettings();
}

void AutoClickerStore::apply(const Preset& preset) {
    AutoClickerConfig applied = preset.config;
    applied.hotkey = config.get().hotkey;
    config.set(std::move(applied));
}

void AutoClickerStore::saveCurrentAsPreset(std::string named) {
    presets_.modify(
        [&](std::vector<Preset>& presets) { presets.push_back(Preset::make(std::move(named), config.get())); });
    presetStore_->savePresets(presets_.get());
}

void AutoClickerStore::deletePreset(const Preset& preset) {
    // A copy: the argument may be one of the list's own elements.
    presets_.modify([id = preset.id](std::vector<Preset>& presets) {
        std::erase_if(presets, [&](const Preset& one) { return one.id == id; });
    });
    presetStore_->savePresets(presets_.get());
}

void AutoClickerStore::resetToDefaults() {
    AutoClickerConfig defaults = AutoClickerConfig::default_();
    defaults.hotkey = config.get().hotkey;
    config.set(std::move(defaults));
}

std::optional<Bytes> AutoClickerStore::exportConfigData() const {
    auto bytes = presetStore_->exportConfig(config.get());
    return bytes ? std::optional(std::move(bytes).value()) : std::nullopt;
}

bool AutoClickerStore::importConfig(const Bytes& from) {
    auto imported = presetStore_->importConfig(from);
    if (!imported) {
        return false;
    }
    config.set(std::move(imported).value());
    return true;
}

void AutoClickerStore::applyHotkey(const std::optional<HotkeyCombo>& combo) {
    if (!combo) {
        hotkey_.unregister();
        return;
    }
    hotkey_.register_(*combo, [weak = weak_from_this(), &loop = loop_] {
        loop.post([weak] {
            if (const auto store = weak.lock()) {
                store->toggleStartStop();
            }
        });
    });
}

} // namespace velloran
