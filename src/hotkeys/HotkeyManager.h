#pragma once

#include "async/Published.h"
#include "async/Stream.h"
#include "hotkeys/HotkeyCombo.h"
#include "platform/HotKeys.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace velloran {

/// Makes one combination a system-wide shortcut. At most one is registered at a time. Main thread.
class HotkeyManager {
public:
    using Action = std::function<void()>;

    /// "VLRN", first character in the highest byte.
    static constexpr std::uint32_t hotKeySignature = 0x564C524E;
    static constexpr std::uint32_t hotKeyNumber = 1;

    /// The one instance, made on first use. It works on the desktop of the installed platform.
    static HotkeyManager& shared();

    /// Unregisters and destroys the shared instance, if there is one. Called before the platform goes away.
    static void endShared();

    HotkeyManager(const HotkeyManager&) = delete;
    HotkeyManager& operator=(const HotkeyManager&) = delete;
    ~HotkeyManager();

    /// Replaces whatever was registered. `onFire` is called in a turn of the main loop after each press. A combination
    /// that cannot be registered is logged and otherwise silent. While the desktop's hot keys are only awaited nothing
    /// happens: it has to be called again once they are decided.
    void register_(const HotkeyCombo& combo, Action onFire);

    /// Forgets the hot key and its action. No effect when nothing is registered.
    void unregister();

    /// What the desktop has said last to what is registered; nothing before it has.
    [[nodiscard]] const std::optional<platform::HotKeyAnswer>& answer() const { return answer_.get(); }

    /// What that is now, and whenever it changes.
    [[nodiscard]] Stream<std::optional<platform::HotKeyAnswer>> answers() const {
        return answer_.stream().removeDuplicates();
    }

private:
    HotkeyManager();

    void hear(const platform::HotKeyAnswer& answer);
    platform::Status handle(const platform::HotKeyEvent* event);

    Subscription hotKeyRef_;
    Subscription handlerRef_;
    Action callback_;
    Published<std::optional<platform::HotKeyAnswer>> answer_{std::nullopt};
    /// Lets a press that is on its way find out whether this object still exists.
    std::shared_ptr<HotkeyManager*> self_;
};

} // namespace velloran
