#pragma once

#include "platform/HotKeys.h"

#include <wayland-client.h>

#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace velloran::platform::wayland {

/// What a compositor tells of a hot key, from inside the reading of the connection. Whoever is told may destroy the hot
/// key.
class HotKeyReceiver {
public:
    HotKeyReceiver() = default;
    HotKeyReceiver(const HotKeyReceiver&) = delete;
    HotKeyReceiver& operator=(const HotKeyReceiver&) = delete;
    virtual ~HotKeyReceiver() = default;

    virtual void bound() = 0;
    /// It was not bound. Nothing follows.
    virtual void denied(Status status) = 0;
    /// It is bound no more. Nothing follows.
    virtual void revoked(Status status) = 0;
    virtual void pressed() = 0;
    virtual void released() = 0;
};

/// A hot key that a compositor was asked for. Destroying it is a request, which gives it back; nothing is told after
/// that.
class HotKeyObject {
public:
    HotKeyObject() = default;
    HotKeyObject(const HotKeyObject&) = delete;
    HotKeyObject& operator=(const HotKeyObject&) = delete;
    virtual ~HotKeyObject() = default;
};

/// What a compositor offers to bind hot keys for programs, by one of the protocols for that. To be used while sending.
/// What it made goes before the connection; it may go before that.
class HotKeyProtocol {
public:
    /// A symbol of the keymap, the one that the key gives by itself, and modifiers as those of `HotKeys`.
    struct Combination {
        std::uint32_t symbol = 0;
        std::uint32_t modifiers = 0;

        friend bool operator==(const Combination&, const Combination&) = default;
    };

    HotKeyProtocol() = default;
    HotKeyProtocol(const HotKeyProtocol&) = delete;
    HotKeyProtocol& operator=(const HotKeyProtocol&) = delete;
    virtual ~HotKeyProtocol() = default;

    /// Asks for one. `receiver` has to outlive it.
    virtual std::unique_ptr<HotKeyObject> ask(const Combination& combination, HotKeyReceiver& receiver) = 0;
};

/// `xx-hotkey-v1`, by the number that the global has in the registry.
std::unique_ptr<HotKeyProtocol> bindXxHotKeys(wl_registry* registry, std::uint32_t name);

/// `vicinae-hotkey-v1`, which was there before the other.
std::unique_ptr<HotKeyProtocol> bindVicinaeHotKeys(wl_registry* registry, std::uint32_t name);

/// What the compositors show of the program and its hot key.
inline constexpr auto hotKeyApplication = "app.velloran.Velloran";
inline constexpr auto hotKeyDescription = "Start or stop clicking";

/// Modifiers as both protocols count them.
inline std::uint32_t protocolModifiers(std::uint32_t modifiers) {
    constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 4> bits{
        {{shiftModifier, 1}, {controlModifier, 2}, {optionModifier, 4}, {commandModifier, 8}}};
    std::uint32_t result = 0;
    for (const auto& [ours, theirs] : bits) {
        result |= (modifiers & ours) != 0 ? theirs : 0;
    }
    return result;
}

} // namespace velloran::platform::wayland
