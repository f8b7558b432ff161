#include "platform/wayland/FakeShell.h"

#include <xdg-shell-server-protocol.h>

#include <cstring>
#include <utility>

namespace velloran::tests {

namespace {

FakeShell& shellOf(wl_resource* resource) {
    return *static_cast<FakeShell*>(wl_resource_get_user_data(resource));
}

void destroyed(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
}

wl_resource* make(wl_client* client, const wl_interface& type, int version, std::uint32_t id, const void* requests,
                  FakeShell& shell, wl_resource_destroy_func_t atEnd = nullptr) {
    wl_resource* const resource = wl_resource_create(client, &type, version, id);
    wl_resource_set_implementation(resource, requests, &shell, atEnd);
    return resource;
}

} // namespace

FakeShell::FakeShell(FakeCompositor& compositor, int version, std::optional<std::vector<std::uint32_t>> abilities)
    : server_(compositor),
      compositor_(wl_global_create(compositor.display(), &wl_compositor_interface, 1, this, bindCompositor)),
      shell_(wl_global_create(compositor.display(), &xdg_wm_base_interface, version, this, bindShell)),
      abilities_(std::move(abilities)) {}

FakeShell::~FakeShell() {
    // What they have made refers to this.
    server_.endClients();
    wl_global_destroy(shell_);
    wl_global_destroy(compositor_);
}

void FakeShell::bindCompositor(wl_client* client, void* shell, std::uint32_t version, std::uint32_t id) {
    static const struct wl_surface_interface surfaceRequests {
        destroyed,
            [](wl_client* /*client*/, wl_resource* surface, wl_resource* /*picture*/, std::int32_t /*x*/,
               std::int32_t /*y*/) { ++shellOf(surface).pictures; },
            {}, {}, {}, {}, [](wl_client* /*client*/, wl_resource* surface) { shellOf(surface).answer(); }, {}, {}, {},
            {},
    };

    static const struct wl_compositor_interface requests {
        [](wl_client* caller, wl_resource* compositor, std::uint32_t surface) {
            make(caller, wl_surface_interface, wl_resource_get_version(compositor), surface, &surfaceRequests,
                 shellOf(compositor));
        },
            {},
    };

    make(client, wl_compositor_interface, static_cast<int>(version), id, &requests, *static_cast<FakeShell*>(shell));
}

void FakeShell::bindShell(wl_client* client, void* shell, std::uint32_t version, std::uint32_t id) {
    static const struct xdg_toplevel_interface windowRequests {
        destroyed, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {},
    };

    static const struct xdg_surface_interface surfaceRequests {
        destroyed,
            [](wl_client* caller, wl_resource* surface, std::uint32_t window) {
                auto& self = shellOf(surface);
                ++self.begun;
                ++self.windows;
                self.surface_ = surface;
                self.window_ = make(caller, xdg_toplevel_interface, wl_resource_get_version(surface), window,
                                    &windowRequests, self, [](wl_resource* dying) {
                                        --shellOf(dying).windows;
                                        shellOf(dying).window_ = nullptr;
                                    });
            },
            {}, {}, {},
    };

    static const struct xdg_wm_base_interface requests {
        destroyed, {},
            [](wl_client* caller, wl_resource* base, std::uint32_t surface, wl_resource* /*of*/) {
                make(caller, xdg_surface_interface, wl_resource_get_version(base), surface, &surfaceRequests,
                     shellOf(base));
            },
            {},
    };

    make(client, xdg_wm_base_interface, static_cast<int>(version), id, &requests, *static_cast<FakeShell*>(shell));
}

void FakeShell::answer() {
    if (window_ == nullptr) {
        return;
    }
    wl_array none;
    wl_array_init(&none);
    if (abilities_) {
        wl_array abilities;
        wl_array_init(&abilities);
        const std::size_t size = abilities_->size() * sizeof(std::uint32_t);
        std::memcpy(wl_array_add(&abilities, size), abilities_->data(), size);
        xdg_toplevel_send_wm_capabilities(window_, &abilities);
        wl_array_release(&abilities);
    }
    xdg_toplevel_send_configure(window_, 0, 0, &none);
    xdg_surface_send_configure(surface_, 1);
    wl_array_release(&none);
}

} // namespace velloran::tests
