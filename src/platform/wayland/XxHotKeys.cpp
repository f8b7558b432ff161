#include "platform/wayland/HotKeyProtocol.h"
#include "platform/wayland/WaylandOwned.h"

#include <xx-hotkey-v1-client-protocol.h>

namespace velloran::platform::wayland {

namespace {

class XxHotKey final : public HotKeyObject {
public:
    XxHotKey(xx_hotkey_v1* object, HotKeyReceiver& receiver) : object_(object) {
        static constexpr xx_hotkey_v1_listener listener{
            [](void* data, xx_hotkey_v1* /*object*/) { static_cast<HotKeyReceiver*>(data)->bound(); },
            [](void* data, xx_hotkey_v1* /*object*/, std::uint32_t reason, const char* /*message*/) {
                static_cast<HotKeyReceiver*>(data)->denied(
                    reason == XX_HOTKEY_V1_DENY_REASON_ALREADY_BOUND ? hotKeyExistsError : hotKeyInvalidError);
            },
            [](void* data, xx_hotkey_v1* /*object*/, const char* /*message*/) {
                static_cast<HotKeyReceiver*>(data)->revoked(hotKeyInvalidError);
            },
            [](void* data, xx_hotkey_v1* /*object*/, std::uint32_t /*serial*/, std::uint32_t /*time*/) {
                static_cast<HotKeyReceiver*>(data)->pressed();
            },
            [](void* data, xx_hotkey_v1* /*object*/, std::uint32_t /*serial*/, std::uint32_t /*time*/) {
                static_cast<HotKeyReceiver*>(data)->released();
            },
        };
        xx_hotkey_v1_add_listener(object_.get(), &listener, &receiver);
    }

private:
    WaylandOwned<xx_hotkey_v1> object_;
};

class XxHotKeys final : public HotKeyProtocol {
public:
    explicit XxHotKeys(xx_hotkey_manager_v1* manager) : manager_(manager) {
        xx_hotkey_manager_v1_set_app_id(manager, hotKeyApplication);
    }

    std::unique_ptr<HotKeyObject> ask(const Combination& combination, HotKeyReceiver& receiver) override {
        xx_hotkey_v1* const object = xx_hotkey_manager_v1_create_hotkey(manager_.get());
        auto hotKey = std::make_unique<XxHotKey>(object, receiver);
        xx_hotkey_v1_set_description(object, hotKeyDescription);
        xx_hotkey_v1_set_key_trigger(object, combination.symbol, protocolModifiers(combination.modifiers));
        xx_hotkey_v1_commit(object);
        return hotKey;
    }

private:
    WaylandOwned<xx_hotkey_manager_v1> manager_;
};

} // namespace

std::unique_ptr<HotKeyProtocol> bindXxHotKeys(wl_registry* registry, std::uint32_t name) {
    return std::make_unique<XxHotKeys>(
        static_cast<xx_hotkey_manager_v1*>(wl_registry_bind(registry, name, &xx_hotkey_manager_v1_interface, 1)));
}

} // namespace velloran::platform::wayland
