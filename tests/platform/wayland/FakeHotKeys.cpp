#include "platform/wayland/FakeHotKeys.h"

#include <vicinae-hotkey-v1-server-protocol.h>
#include <xx-hotkey-v1-server-protocol.h>

#include <utility>

namespace velloran::tests {

namespace {

void destroyed(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
}

} // namespace

void FakeHotKeys::offer(Protocol protocol) {
    wl_global*& global = protocol == Protocol::xx ? xx_ : vicinae_;
    global = protocol == Protocol::xx
                 ? wl_global_create(compositor_.display(), &xx_hotkey_manager_v1_interface, 1, this, bindXx)
                 : wl_global_create(compositor_.display(), &vicinae_hotkey_manager_v1_interface, 1, this, bindVicinae);
    compositor_.flush();
}

void FakeHotKeys::withdraw(Protocol protocol) {
    wl_global_destroy(std::exchange(protocol == Protocol::xx ? xx_ : vicinae_, nullptr));
    compositor_.flush();
}

void FakeHotKeys::bind() {
    const HotKey& last = hotKeys.back();
    last.protocol == Protocol::xx ? xx_hotkey_v1_send_bound(last.resource)
                                  : vicinae_hotkey_v1_send_bound(last.resource);
    compositor_.flush();
}

void FakeHotKeys::deny(std::uint32_t reason) {
    const HotKey& last = hotKeys.back();
    last.protocol == Protocol::xx ? xx_hotkey_v1_send_denied(last.resource, reason, "no")
                                  : vicinae_hotkey_v1_send_denied(last.resource, reason, "no");
    compositor_.flush();
}

void FakeHotKeys::revoke(std::uint32_t reason) {
    const HotKey& last = hotKeys.back();
    last.protocol == Protocol::xx ? xx_hotkey_v1_send_revoked(last.resource, "gone")
                                  : vicinae_hotkey_v1_send_revoked(last.resource, reason, "gone");
    compositor_.flush();
}

void FakeHotKeys::press() {
    const HotKey& last = hotKeys.back();
    last.protocol == Protocol::xx ? xx_hotkey_v1_send_triggered(last.resource, 1, 1)
                                  : vicinae_hotkey_v1_send_pressed(last.resource, 1, 1);
    compositor_.flush();
}

void FakeHotKeys::release() {
    const HotKey& last = hotKeys.back();
    last.protocol == Protocol::xx ? xx_hotkey_v1_send_released(last.resource, 1, 2)
                                  : vicinae_hotkey_v1_send_released(last.resource, 1, 2);
    compositor_.flush();
}

FakeHotKeys::HotKey& FakeHotKeys::hotKeyOf(wl_resource* resource) {
    auto& self = *static_cast<FakeHotKeys*>(wl_resource_get_user_data(resource));
    for (HotKey& hotKey : self.hotKeys) {
        if (hotKey.resource == resource) {
            return hotKey;
        }
    }
    return self.hotKeys.front();
}

FakeHotKeys::HotKey& FakeHotKeys::make(wl_client* client, std::uint32_t id, Protocol protocol) {
    static const struct xx_hotkey_v1_interface xxRequests {
        destroyed,
            [](wl_client* /*client*/, wl_resource* resource, const char* description) {
                hotKeyOf(resource).description = description;
            },
            [](wl_client* /*client*/, wl_resource* /*resource*/, wl_resource* /*seat*/) {},
            [](wl_client* /*client*/, wl_resource* resource, std::uint32_t symbol, std::uint32_t modifiers) {
                hotKeyOf(resource).symbol = symbol;
                hotKeyOf(resource).modifiers = modifiers;
            },
            [](wl_client* /*client*/, wl_resource* /*resource*/, std::uint32_t /*button*/,
               std::uint32_t /*modifiers*/) {},
            [](wl_client* /*client*/, wl_resource* resource) { hotKeyOf(resource).isCommitted = true; },
    };

    static const struct vicinae_hotkey_v1_interface vicinaeRequests { destroyed, };

    const bool isXx = protocol == Protocol::xx;
    wl_resource* const resource =
        wl_resource_create(client, isXx ? &xx_hotkey_v1_interface : &vicinae_hotkey_v1_interface, 1, id);
    const void* const requests =
        isXx ? static_cast<const void*>(&xxRequests) : static_cast<const void*>(&vicinaeRequests);
    wl_resource_set_implementation(resource, requests, this, [](wl_resource* dying) {
        static_cast<FakeHotKeys*>(wl_resource_get_user_data(dying))->hotKeys.remove_if([&](const HotKey& hotKey) {
            return hotKey.resource == dying;
        });
    });
    HotKey& made = hotKeys.emplace_back();
    made.resource = resource;
    made.protocol = protocol;
    made.application = application_;
    return made;
}

void FakeHotKeys::bindXx(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    static const struct xx_hotkey_manager_v1_interface requests {
        destroyed,
            [](wl_client* /*client*/, wl_resource* manager, const char* application) {
                static_cast<FakeHotKeys*>(wl_resource_get_user_data(manager))->application_ = application;
            },
            [](wl_client* owner, wl_resource* manager, std::uint32_t newId) {
                static_cast<FakeHotKeys*>(wl_resource_get_user_data(manager))->make(owner, newId, Protocol::xx);
            },
    };

    wl_resource* const resource =
        wl_resource_create(client, &xx_hotkey_manager_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &requests, self, nullptr);
}

void FakeHotKeys::bindVicinae(wl_client* client, void* self, std::uint32_t version, std::uint32_t id) {
    static const struct vicinae_hotkey_manager_v1_interface requests {
        destroyed,
            [](wl_client* owner, wl_resource* manager, std::uint32_t newId, std::uint32_t symbol,
               std::uint32_t modifiers, wl_resource* /*seat*/, const char* application, const char* description) {
                HotKey& made = static_cast<FakeHotKeys*>(wl_resource_get_user_data(manager))
                                   ->make(owner, newId, Protocol::vicinae);
                made.symbol = symbol;
                made.modifiers = modifiers;
                made.application = application;
                made.description = description;
                made.isCommitted = true;
            },
    };

    wl_resource* const resource =
        wl_resource_create(client, &vicinae_hotkey_manager_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &requests, self, nullptr);
}

} // namespace velloran::tests
