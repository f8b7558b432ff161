#pragma once

#include "platform/x11/XcbHandles.h"

#include <array>
#include <cstdint>
#include <vector>

namespace velloran::platform::x11 {

/// The key symbols found on the keys of each of the eight modifiers, Shift first.
using ModifierSymbols = std::array<std::vector<xcb_keysym_t>, 8>;

/// Which bits of an event's state stand for what. Most modifiers have no fixed bit: it follows from the keys assigned
/// to them.
struct ModifierBits {
    std::uint16_t shift = XCB_MOD_MASK_SHIFT;
    std::uint16_t control = XCB_MOD_MASK_CONTROL;
    std::uint16_t option = XCB_MOD_MASK_1;
    std::uint16_t command = XCB_MOD_MASK_4;
    /// Caps Lock, Num Lock and Scroll Lock: they never make a difference to a shortcut.
    std::uint16_t locks = XCB_MOD_MASK_LOCK;

    /// The bits of a set of `platform` modifiers.
    [[nodiscard]] std::uint16_t stateOf(std::uint32_t modifiers) const;

    /// `state` with every combination of locks, itself first.
    [[nodiscard]] std::vector<std::uint16_t> withLocks(std::uint16_t state) const;

    /// What of an event's state counts for a shortcut.
    [[nodiscard]] std::uint16_t relevant(std::uint16_t state) const;

    friend bool operator==(const ModifierBits&, const ModifierBits&) = default;
};

/// Alt and Super stay on their customary bits where no key says otherwise.
ModifierBits findModifierBits(const ModifierSymbols& symbols);

/// Asks the server; waits for the answers. Without them the customary bits.
ModifierBits readModifierBits(xcb_connection_t* connection);

} // namespace velloran::platform::x11
