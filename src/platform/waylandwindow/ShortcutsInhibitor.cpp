#include "platform/waylandwindow/ShortcutsInhibitor.h"

#include "platform/waylandwindow/toolkitWayland.h"

#include <QGuiApplication>

#include <string_view>

namespace velloran::platform::waylandwindow {

/// What is offered comes in a later turn of the loop, when a combination may already be waited for.
const wl_registry_listener ShortcutsInhibitor::listener{
    [](void* data, wl_registry* registry, std::uint32_t name, const char* type, std::uint32_t) {
        if (std::string_view(type) == zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) {
            auto& self = *static_cast<ShortcutsInhibitor*>(data);
            self.manager_.reset(static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1*>(
                wl_registry_bind(registry, name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1)));
            self.begin();
        }
    },
    [](void*, wl_registry*, std::uint32_t) {},
};

Subscription ShortcutsInhibitor::inhibit() {
    end();
    wl_display* const display = toolkitDisplay();
    window_ = QGuiApplication::focusWindow();
    if (display == nullptr || !window_) {
        return {};
    }
    if (registry_) {
        begin();
    } else {
        registry_.reset(wl_display_get_registry(display));
        wl_registry_add_listener(registry_.get(), &listener, this);
    }
    // The loop may be asleep already as far as the toolkit knows.
    wl_display_flush(display);
    return Subscription([this, call = ++call_] {
        if (call_ == call) {
            end();
        }
    });
}

void ShortcutsInhibitor::begin() {
    wl_surface* const surface = window_ ? surfaceOf(*window_) : nullptr;
    wl_seat* const seat = toolkitSeat();
    if (manager_ && !inhibitor_ && surface != nullptr && seat != nullptr) {
        inhibitor_.reset(zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager_.get(), surface, seat));
    }
}

void ShortcutsInhibitor::end() {
    window_ = nullptr;
    inhibitor_.reset();
    if (wl_display* const display = toolkitDisplay()) {
        wl_display_flush(display);
    }
}

} // namespace velloran::platform::waylandwindow
