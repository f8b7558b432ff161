#pragma once

#include <keyboard-shortcuts-inhibit-unstable-v1-client-protocol.h>
#include <wayland-client.h>

#include <memory>

namespace velloran::platform::waylandwindow {

/// Lets go of an object of the protocol.
struct ProtocolDeleter {
    void operator()(wl_registry* object) const { wl_registry_destroy(object); }

    void operator()(zwp_keyboard_shortcuts_inhibit_manager_v1* object) const {
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(object);
    }

    void operator()(zwp_keyboard_shortcuts_inhibitor_v1* object) const {
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(object);
    }
};

/// Owns an object of the protocol; ends before the toolkit's application object.
template<typename Object>
using ProtocolOwned = std::unique_ptr<Object, ProtocolDeleter>;

} // namespace velloran::platform::waylandwindow
