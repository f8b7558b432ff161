#include "platform/wayland/HotKeyProtocol.h"
#include "platform/wayland/WaylandOwned.h"

#include <vicinae-hotkey-v1-client-protocol.h>

namespace velloran::platform::wayland {

namespace {

class VicinaeHotKey final : public HotKeyObject {
public:
    VicinaeHotKey(vicinae_hotkey_v1* object, HotKeyReceiver& receiver) : object_(object) {
        static constexpr vicinae_hotkey_v1_listener listener{
            [](void* data, vicinae_hotkey_v1* /*object*/) { static_cast<HotKeyReceiver*>(data)->bound(); },
            [](void* data, vicinae_hotkey_v1* /*object*/, std::uint32_t reason, const char* /*message*/) {
                static_cast<HotKeyReceiver*>(data)->denied(
                    reason == VICINAE_HOTKEY_V1_DENY_REASON_ALREADY_BOUND ? hotKeyExistsError : hotKeyInvalidError);
            },
            [](void* data, vicinae_hotkey_v1* /*object*/, std::uint32_t reason, const char* /*message*/) {
                static_cast<HotKeyReceiver*>(data)->revoked(
                    reason == VICINAE_HOTKEY_V1_REVOKE_REASON_SUPERSEDED ? hotKeyExistsError : hotKeyInvalidError);
            },
            [](void* data, vicinae_hotkey_v1* /*object*/, std::uint32_t /*serial*/, std::uint32_t /*time*/) {
                static_cast<HotKeyReceiver*>(data)->pressed();
            },
            [](void* data, vicinae_hotkey_v1* /*object*/, std::uint32_t /*serial*/, std::uint32_t /*time*/) {
                static_cast<HotKeyReceiver*>(data)->released();
            },
        };
        vicinae_hotkey_v1_add_listener(object_.get(), &listener, &receiver);
    }

private:
    WaylandOwned<vicinae_hotkey_v1> object_;
};

class VicinaeHotKeys final : public HotKeyProtocol {
public:
    explicit VicinaeHotKeys(vicinae_hotkey_manager_v1* manager) : manager_(manager) {}

    std::unique_ptr<HotKeyObject> ask(const Combination& combination, HotKeyReceiver& receiver) override {
        return std::make_unique<VicinaeHotKey>(
            vicinae_hotkey_manager_v1_bind(manager_.get(), combination.symbol, protocolModifiers(combination.modifiers),
                                           nullptr, hotKeyApplication, hotKeyDescription),
            receiver);
    }

private:
    WaylandOwned<vicinae_hotkey_manager_v1> manager_;
};

} // namespace

std::unique_ptr<HotKeyProtocol> bindVicinaeHotKeys(wl_registry* registry, std::uint32_t name) {
    return std::make_unique<VicinaeHotKeys>(static_cast<vicinae_hotkey_manager_v1*>(
        wl_registry_bind(registry, name, &vicinae_hotkey_manager_v1_interface, 1)));
}

} // namespace velloran::platform::wayland
