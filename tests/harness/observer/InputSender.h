#pragma once

#include "harness/observer/Server.h"

#include <cstdint>
#include <vector>

namespace velloran::observer {

/// Plays the user's keyboard and mouse, through the XTEST extension. Keys are X key codes. Everything is done by the
/// server when a function returns.
class InputSender {
public:
    explicit InputSender(const Server& server) : server_(server) {}

    void key(std::uint8_t key, bool isPress) const;
    /// Presses `held` in order, presses and releases `key`, and releases `held` in reverse order.
    void tap(std::uint8_t key, const std::vector<std::uint8_t>& held = {}) const;
    void pressAll(const std::vector<std::uint8_t>& keys) const;
    void releaseAll(const std::vector<std::uint8_t>& keys) const;

    /// Physical button number.
    void button(std::uint8_t button, bool isPress) const;
    void movePointer(Place place) const;

    /// Sets or clears locked modifiers, as bits of an event's state: 0x02 Caps Lock, 0x10 customarily Num Lock.
    void lockModifiers(unsigned modifiers, bool isOn) const;
    /// Makes a layout group the active one, 0 being the first.
    void lockGroup(unsigned group) const;

    /// When a held key begins to repeat and how fast, in milliseconds.
    void setRepeat(std::uint16_t delay, std::uint16_t interval) const;

    /// `roles[i]` is what physical button i + 1 plays. False when the server refuses.
    [[nodiscard]] bool setButtonMapping(const std::vector<std::uint8_t>& roles) const;

    /// Grabs a key on the root window. False when another program has it.
    [[nodiscard]] bool grabKey(std::uint8_t key, unsigned modifiers) const;
    void ungrabKey(std::uint8_t key, unsigned modifiers) const;

private:
    void fake(std::uint8_t kind, std::uint8_t detail, Place place = {}) const;

    const Server& server_;
};

} // namespace velloran::observer
