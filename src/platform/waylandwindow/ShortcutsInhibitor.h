#pragma once

#include "async/Subscription.h"
#include "platform/waylandwindow/WindowProtocols.h"

#include <QPointer>
#include <QWindow>

#include <cstdint>

namespace velloran::platform::waylandwindow {

/// Has the compositor pass its own combinations of keys on to the program's window, as far as it lets programs ask for
/// that (`keyboard-shortcuts-inhibit-unstable-v1`); the user can always say no. On other window systems nothing
/// happens. Nothing here waits. Main thread; ends before the toolkit's application object.
class ShortcutsInhibitor {
public:
    ShortcutsInhibitor() = default;
    ShortcutsInhibitor(const ShortcutsInhibitor&) = delete;
    ShortcutsInhibitor& operator=(const ShortcutsInhibitor&) = delete;
    ~ShortcutsInhibitor() = default;

    /// Holds for the window that has the focus now, whenever it has the focus, until the result goes. One at a time: a
    /// later call takes the place of the earlier.
    Subscription inhibit();

private:
    static const wl_registry_listener listener;

    void begin();
    void end();

    QPointer<QWindow> window_;
    /// Which call holds: the end of an earlier one must not end it.
    std::uint64_t call_ = 0;
    ProtocolOwned<wl_registry> registry_;
    ProtocolOwned<zwp_keyboard_shortcuts_inhibit_manager_v1> manager_;
    ProtocolOwned<zwp_keyboard_shortcuts_inhibitor_v1> inhibitor_;
};

} // namespace velloran::platform::waylandwindow
