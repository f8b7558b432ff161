#pragma once

#include "base/strictJson.h"
#include "hotkeys/KeyEvent.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace velloran {

/// Modifier keys, as bits of an event's modifier flags.
enum class ModifierFlags : std::uint64_t {
    none = 0,
    shift = 0x20000,
    control = 0x40000,
    option = 0x80000,
    command = 0x100000,
};

constexpr ModifierFlags operator|(ModifierFlags a, ModifierFlags b) {
    return static_cast<ModifierFlags>(static_cast<std::uint64_t>(a) | static_cast<std::uint64_t>(b));
}

/// Whether `flags` hold all of `wanted`.
constexpr bool contains(ModifierFlags flags, ModifierFlags wanted) {
    return (static_cast<std::uint64_t>(flags) & static_cast<std::uint64_t>(wanted)) ==
           static_cast<std::uint64_t>(wanted);
}

/// One global shortcut: a key with its modifiers, and the text that shows it. Two combinations of the same keys with
/// different texts are different.
struct HotkeyCombo {
    /// Bits of an event's flags that do not depend on the device. Bits of other keys than the four modifiers are kept
    /// as they came.
    static constexpr std::uint64_t deviceIndependentMask = 0xFFFF0000;

    std::uint64_t modifierFlagsRaw = 0;
    /// The layout-independent virtual key code (0 is A, 49 is Space, 100 is F8).
    std::uint32_t keyCode = 0;
    /// The label, for example "⌃⌥S".
    std::string display;

    /// The combination that a key press stands for; nothing when none of the four modifiers is held or the key gives no
    /// text.
    static std::optional<HotkeyCombo> fromEvent(const KeyEvent& event);

    [[nodiscard]] ModifierFlags modifierFlags() const { return ModifierFlags{modifierFlagsRaw}; }

    /// The modifiers in the encoding of hot-key registration (`platform::commandModifier` and its like).
    [[nodiscard]] std::uint32_t carbonModifiers() const;

    friend bool operator==(const HotkeyCombo&, const HotkeyCombo&) = default;

private:
    static std::string buildDisplay(ModifierFlags flags, std::uint32_t keyCode, const std::string& characters);
    static std::string nameForKey(std::uint32_t code, const std::string& fallback);
};

/// The JSON object of a combination.
json::Value encode(const HotkeyCombo& combo);

/// Reads such an object; nothing when a member is missing or has the wrong type.
std::optional<HotkeyCombo> decodeHotkeyCombo(const json::Value& value);

} // namespace velloran

/// Takes in all three fields, as equality does.
template<>
struct std::hash<velloran::HotkeyCombo> {
    std::size_t operator()(const velloran::HotkeyCombo& combo) const noexcept;
};
