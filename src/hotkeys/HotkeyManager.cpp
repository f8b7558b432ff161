#include "hotkeys/HotkeyManager.h"

#include "async/EventLoop.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

#include <string>
#include <utility>

namespace velloran {

using platform::Platform;

namespace {

std::unique_ptr<HotkeyManager>& sharedInstance() {
    static std::unique_ptr<HotkeyManager> instance;
    return instance;
}

} // namespace

HotkeyManager& HotkeyManager::shared() {
    if (!sharedInstance()) {
        sharedInstance().reset(new HotkeyManager());
    }
    return *sharedInstance();
}

void HotkeyManager::endShared() {
    sharedInstance().reset();
}

HotkeyManager::HotkeyManager() : self_(std::make_shared<HotkeyManager*>(this)) {}

HotkeyManager::~HotkeyManager() {
    unregister();
}

void HotkeyManager::register_(const HotkeyCombo& combo, Action onFire) {
    unregister();
    callback_ = std::move(onFire);
    const auto hotKeys = Platform::current().desktop.get().hotKeys;
    if (!hotKeys.part) {
        if (!hotKeys.isAwaited) {
            hear({platform::hotKeyInvalidError, {}});
        }
        return;
    }
    handlerRef_ = hotKeys.part->installHandler([this](const platform::HotKeyEvent* event) { return handle(event); });
    constexpr platform::HotKeyId id{hotKeySignature, hotKeyNumber};
    hotKeyRef_ = hotKeys.part->registerHotKey(combo.keyCode, combo.carbonModifiers(), id,
                                              [this](const platform::HotKeyAnswer& answer) { hear(answer); });
}

void HotkeyManager::unregister() {
    hotKeyRef_.cancel();
    handlerRef_.cancel();
    callback_ = nullptr;
    answer_.set(std::nullopt);
}

void HotkeyManager::hear(const platform::HotKeyAnswer& answer) {
    const bool isRefused = !answer_.get() && answer.status != platform::noErr;
    answer_.set(answer);
    if (isRefused) {
        // The handler and the action stay until the next call; without a hot key nothing fires them.
        Platform::current().systemLog.write("HotkeyManager: RegisterEventHotKey failed with status " +
                                            std::to_string(answer.status));
    }
}

platform::Status HotkeyManager::handle(const platform::HotKeyEvent* event) {
    if (event == nullptr) {
        return platform::noErr;
    }
    if (event->hotKeyId.signature == hotKeySignature) {
        Platform::current().mainLoop.post([self = std::weak_ptr(self_)] {
            const auto manager = self.lock();
            if (!manager || !(*manager)->callback_) {
                return;
            }
            // A copy: the action may register another combination and so replace itself.
            const Action action = (*manager)->callback_;
            action();
        });
    }
    return platform::noErr;
}

} // namespace velloran
