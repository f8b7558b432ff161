#include "platform/x11/ModifierBits.h"

#include "platform/HotKeys.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <initializer_list>
#include <optional>

namespace velloran::platform::x11 {

namespace {

/// The first two modifiers, Shift and Lock, and Control have fixed bits and are not for other keys.
constexpr std::size_t firstFreeModifier = 3;
constexpr unsigned modifierStateMask = 0xFF;

std::optional<std::uint16_t> bitWithSymbol(const ModifierSymbols& symbols, std::initializer_list<xcb_keysym_t> wanted) {
    for (std::size_t modifier = firstFreeModifier; modifier < symbols.size(); ++modifier) {
        const auto& own = symbols[modifier];
        if (std::find_first_of(own.begin(), own.end(), wanted.begin(), wanted.end()) != own.end()) {
            return static_cast<std::uint16_t>(1U << modifier);
        }
    }
    return std::nullopt;
}

// By hand, because the library for key symbols takes the server's answer for granted: a server that goes at that moment
// would take the program along. It also cannot list a key's symbols, so that it would save no line.
ModifierSymbols symbolsOf(const xcb_get_modifier_mapping_reply_t& modifiers,
                          const xcb_get_keyboard_mapping_reply_t& keyboard, xcb_keycode_t firstKey) {
    const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(&modifiers);
    const xcb_keysym_t* const keySymbols = xcb_get_keyboard_mapping_keysyms(&keyboard);
    const auto symbolCount = static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(&keyboard));
    const std::size_t perKey = keyboard.keysyms_per_keycode;
    const std::size_t perModifier = modifiers.keycodes_per_modifier;

    ModifierSymbols symbols;
    for (std::size_t modifier = 0; modifier < symbols.size(); ++modifier) {
        for (std::size_t i = 0; i < perModifier; ++i) {
            const xcb_keycode_t key = keys[modifier * perModifier + i];
            if (key < firstKey) {
                continue; // zero fills the places that no key takes
            }
            const std::size_t first = static_cast<std::size_t>(key - firstKey) * perKey;
            for (std::size_t at = first; at < std::min(first + perKey, symbolCount); ++at) {
                symbols[modifier].push_back(keySymbols[at]);
            }
        }
    }
    return symbols;
}

} // namespace

std::uint16_t ModifierBits::stateOf(std::uint32_t modifiers) const {
    unsigned state = 0;
    state |= (modifiers & commandModifier) != 0 ? command : 0U;
    state |= (modifiers & optionModifier) != 0 ? option : 0U;
    state |= (modifiers & controlModifier) != 0 ? control : 0U;
    state |= (modifiers & shiftModifier) != 0 ? shift : 0U;
    return static_cast<std::uint16_t>(state);
}

std::vector<std::uint16_t> ModifierBits::withLocks(std::uint16_t state) const {
    std::vector<std::uint16_t> states{state};
    for (unsigned bit = 1; bit <= XCB_MOD_MASK_5; bit <<= 1U) {
        if ((locks & bit) == 0 || (state & bit) != 0) {
            continue;
        }
        const std::size_t count = states.size();
        for (std::size_t i = 0; i < count; ++i) {
            states.push_back(static_cast<std::uint16_t>(states[i] | bit));
        }
    }
    return states;
}

std::uint16_t ModifierBits::relevant(std::uint16_t state) const {
    return static_cast<std::uint16_t>(state & modifierStateMask & ~static_cast<unsigned>(locks));
}

ModifierBits findModifierBits(const ModifierSymbols& symbols) {
    ModifierBits bits;
    bits.option = bitWithSymbol(symbols, {XKB_KEY_Alt_L, XKB_KEY_Alt_R}).value_or(bits.option);
    bits.command = bitWithSymbol(symbols, {XKB_KEY_Super_L, XKB_KEY_Super_R}).value_or(bits.command);
    unsigned locks = bits.locks;
    locks |= bitWithSymbol(symbols, {XKB_KEY_Num_Lock}).value_or(std::uint16_t{0});
    locks |= bitWithSymbol(symbols, {XKB_KEY_Scroll_Lock}).value_or(std::uint16_t{0});
    // A bit that a lock shares with a modifier belongs to the modifier.
    locks &= ~static_cast<unsigned>(bits.option | bits.command);
    bits.locks = static_cast<std::uint16_t>(locks);
    return bits;
}

ModifierBits readModifierBits(xcb_connection_t* connection) {
    if (xcb_connection_has_error(connection) != 0) {
        return {};
    }
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    const auto keyCount = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto modifierCookie = xcb_get_modifier_mapping(connection);
    const auto keyboardCookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, keyCount);
    const Allocated<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifierCookie, nullptr));
    const Allocated<xcb_get_keyboard_mapping_reply_t> keyboard(
        xcb_get_keyboard_mapping_reply(connection, keyboardCookie, nullptr));
    if (!modifiers || !keyboard) {
        return {};
    }
    return findModifierBits(symbolsOf(*modifiers, *keyboard, setup->min_keycode));
}

} // namespace velloran::platform::x11
