#pragma once

#include <vicinae-hotkey-v1-client-protocol.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>
#include <xdg-shell-client-protocol.h>
#include <xx-hotkey-v1-client-protocol.h>

#include <memory>

namespace velloran::platform::wayland {

/// Lets go of an object of the protocol. Has to happen before its display is closed.
struct WaylandDeleter {
    void operator()(wl_callback* object) const { wl_callback_destroy(object); }

    void operator()(wl_registry* object) const { wl_registry_destroy(object); }

    void operator()(wl_keyboard* object) const { wl_keyboard_destroy(object); }

    void operator()(wl_seat* object) const { wl_seat_destroy(object); }

    void operator()(wl_compositor* object) const { wl_compositor_destroy(object); }

    void operator()(wl_surface* object) const { wl_surface_destroy(object); }

    void operator()(xdg_wm_base* object) const { xdg_wm_base_destroy(object); }

    void operator()(xdg_surface* object) const { xdg_surface_destroy(object); }

    void operator()(xdg_toplevel* object) const { xdg_toplevel_destroy(object); }

    void operator()(zwlr_virtual_pointer_manager_v1* object) const { zwlr_virtual_pointer_manager_v1_destroy(object); }

    void operator()(zwlr_virtual_pointer_v1* object) const { zwlr_virtual_pointer_v1_destroy(object); }

    void operator()(xx_hotkey_manager_v1* object) const { xx_hotkey_manager_v1_destroy(object); }

    void operator()(xx_hotkey_v1* object) const { xx_hotkey_v1_destroy(object); }

    void operator()(vicinae_hotkey_manager_v1* object) const { vicinae_hotkey_manager_v1_destroy(object); }

    void operator()(vicinae_hotkey_v1* object) const { vicinae_hotkey_v1_destroy(object); }
};

/// Owns an object of the protocol.
template<typename Object>
using WaylandOwned = std::unique_ptr<Object, WaylandDeleter>;

} // namespace velloran::platform::wayland
