#include "hotkeys/HotkeyCombo.h"

#include "base/text.h"
#include "platform/HotKeys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velloran {

namespace {

struct Modifier {
    ModifierFlags flag;
    const char* glyph;
    std::uint32_t registrationBit;
};

/// In the order in which the glyphs are shown.
constexpr std::array modifiers{
    Modifier{ModifierFlags::control, "⌃", platform::controlModifier},
    Modifier{ModifierFlags::option, "⌥", platform::optionModifier},
    Modifier{ModifierFlags::shift, "⇧", platform::shiftModifier},
    Modifier{ModifierFlags::command, "⌘", platform::commandModifier},
};

/// Keys whose own text would not tell what they are.
constexpr std::array keyNames{
    std::pair{36U, "↩"},    std::pair{48U, "⇥"},    std::pair{49U, "Space"}, std::pair{51U, "⌫"},
    std::pair{117U, "⌦"},   std::pair{53U, "⎋"},    std::pair{123U, "←"},    std::pair{124U, "→"},
    std::pair{126U, "↑"},   std::pair{125U, "↓"},   std::pair{115U, "↖"},    std::pair{119U, "↘"},
    std::pair{116U, "⇞"},   std::pair{121U, "⇟"},   std::pair{122U, "F1"},   std::pair{120U, "F2"},
    std::pair{99U, "F3"},   std::pair{118U, "F4"},  std::pair{96U, "F5"},    std::pair{97U, "F6"},
    std::pair{98U, "F7"},   std::pair{100U, "F8"},  std::pair{101U, "F9"},   std::pair{109U, "F10"},
    std::pair{103U, "F11"}, std::pair{111U, "F12"},
};

} // namespace

std::optional<HotkeyCombo> HotkeyCombo::fromEvent(const KeyEvent& event) {
    const std::uint64_t flagsRaw = event.modifierFlags & deviceIndependentMask;
    const ModifierFlags flags{flagsRaw};
    const bool hasModifier = std::any_of(modifiers.begin(), modifiers.end(),
                                         [flags](const Modifier& modifier) { return contains(flags, modifier.flag); });
    if (!hasModifier) {
        return std::nullopt;
    }
    const std::string characters = event.charactersIgnoringModifiers.value_or("");
    if (characters.empty()) {
        return std::nullopt;
    }
    return HotkeyCombo{flagsRaw, event.keyCode, buildDisplay(flags, event.keyCode, characters)};
}

std::uint32_t HotkeyCombo::carbonModifiers() const {
    std::uint32_t result = 0;
    for (const Modifier& modifier : modifiers) {
        if (contains(modifierFlags(), modifier.flag)) {
            result |= modifier.registrationBit;
        }
    }
    return result;
}

std::string HotkeyCombo::buildDisplay(ModifierFlags flags, std::uint32_t keyCode, const std::string& characters) {
    std::string display;
    for (const Modifier& modifier : modifiers) {
        if (contains(flags, modifier.flag)) {
            display += modifier.glyph;
        }
    }
    return display + nameForKey(keyCode, characters);
}

std::string HotkeyCombo::nameForKey(std::uint32_t code, const std::string& fallback) {
    const auto named =
        std::find_if(keyNames.begin(), keyNames.end(), [code](const auto& entry) { return entry.first == code; });
    return named != keyNames.end() ? named->second : upperCased(fallback);
}

json::Value encode(const HotkeyCombo& combo) {
    json::Value object = json::Value::object();
    object["modifierFlagsRaw"] = combo.modifierFlagsRaw;
    object["keyCode"] = combo.keyCode;
    object["display"] = combo.display;
    return object;
}

std::optional<HotkeyCombo> decodeHotkeyCombo(const json::Value& value) {
    HotkeyCombo combo;
    json::ObjectReader reader(value);
    reader.required("modifierFlagsRaw", combo.modifierFlagsRaw, json::asInteger<std::uint64_t>);
    reader.required("keyCode", combo.keyCode, json::asInteger<std::uint32_t>);
    reader.required("display", combo.display, json::asText);
    return reader.failure() ? std::nullopt : std::optional(std::move(combo));
}

} // namespace velloran

std::size_t std::hash<velloran::HotkeyCombo>::operator()(const velloran::HotkeyCombo& combo) const noexcept {
    constexpr std::size_t spread = 0x9E3779B97F4A7C15;
    std::size_t result = std::hash<std::uint64_t>()(combo.modifierFlagsRaw);
    result = result * spread + std::hash<std::uint32_t>()(combo.keyCode);
    return result * spread + std::hash<std::string>()(combo.display);
}
