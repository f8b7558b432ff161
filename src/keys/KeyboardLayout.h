#pragma once

#include "base/Result.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct xkb_keymap;

namespace velloran::keys {

/// What the user names a keyboard by. Empty text stands for the system's default.
struct LayoutNames {
    std::string rules;
    std::string model;
    std::string layout;
    std::string variant;
    std::string options;
};

/// What is in force on a keyboard besides the keys that are down.
struct KeyboardState {
    /// The active layout group, 0 being the first.
    std::uint32_t group = 0;
    /// The modifiers that are locked, as bits in the keymap's order.
    std::uint32_t lockedModifiers = 0;
};

/// A symbol by which a press may be known, and the modifiers that then belong to it; their bits are in the order Shift,
/// Lock, Control, Mod1 to Mod5.
struct PressedSymbol {
    std::uint32_t symbol = 0;
    std::uint32_t modifiers = 0;

    friend bool operator==(const PressedSymbol&, const PressedSymbol&) = default;
};

/// The symbol of that name; of two that differ in their case only, the small letter. Nothing where none has it.
std::optional<std::uint32_t> symbolNamed(const std::string& name);

/// Tells what the keys of a keyboard give. A value of one moment: it does not follow later changes of the layout.
class KeyboardLayout {
public:
    /// Reads a complete keymap in its text form, as a window system hands it out.
    static Result<KeyboardLayout> fromText(const std::string& keymapText);

    /// Puts a keymap together by names, from the files of this system.
    static Result<KeyboardLayout> fromNames(const LayoutNames& names);

    /// What the key gives with every modifier dropped, except Shift when `shiftHeld` and Num Lock when that is locked.
    /// A key that gives no text reports a readable name instead; a dead key and a modifier key give an empty text.
    [[nodiscard]] std::string charactersIgnoringModifiers(std::uint32_t evdevCode, const KeyboardState& keyboard,
                                                          bool shiftHeld) const;

    /// The name of the symbol that the key gives by itself, in the first group in which it gives one; empty where it
    /// gives none.
    [[nodiscard]] std::string symbolName(std::uint32_t evdevCode) const;

    /// All by which that press may be known, whichever group is active: what the key gives by itself with all the
    /// modifiers, and what it gives under them with those that had no part in it.
    [[nodiscard]] std::vector<PressedSymbol> symbolsOfPress(std::uint32_t evdevCode, std::uint32_t modifiers) const;

    /// The same for one group, 0 being the first; one that the key does not have stands for one that it has.
    [[nodiscard]] std::vector<PressedSymbol> symbolsOfPressIn(std::uint32_t group, std::uint32_t evdevCode,
                                                              std::uint32_t modifiers) const;

private:
    struct ReleaseKeymap {
        void operator()(xkb_keymap* keymap) const;
    };

    explicit KeyboardLayout(xkb_keymap* keymap) : keymap_(keymap) {}

    std::unique_ptr<xkb_keymap, ReleaseKeymap> keymap_;
};

} // namespace velloran::keys
