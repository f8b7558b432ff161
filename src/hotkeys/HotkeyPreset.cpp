#include "hotkeys/HotkeyPreset.h"

namespace velloran {

namespace {

HotkeyPreset make(std::string label, std::uint32_t keyCode, ModifierFlags flags, std::string display) {
    return {Uuid::random(), std::move(label), {static_cast<std::uint64_t>(flags), keyCode, std::move(display)}};
}

} // namespace

const std::vector<HotkeyPreset>& HotkeyPreset::all() {
    using enum ModifierFlags;
    // The blanks line the parentheses up in a menu of fixed-width letters. The first and the fourth text put ⌘ first,
    // unlike recorded combinations, which is why a recorded one never equals them.
    static const std::vector<HotkeyPreset> presets{
        make("⌘⌥A  (Command + Option + A)", 0, command | option, "⌘⌥A"),
        make("⌃⌥C  (Control + Option + C)", 8, control | option, "⌃⌥C"),
        make("⌃⌥S  (Control + Option + S)", 1, control | option, "⌃⌥S"),
        make("⌘⇧F  (Command + Shift + F)", 3, command | shift, "⌘⇧F"),
        make("⌃⌥Z  (Control + Option + Z)", 6, control | option, "⌃⌥Z"),
        make("⌃F8  (Control + F8)", 100, control, "⌃F8"),
        make("⌃F9  (Control + F9)", 101, control, "⌃F9"),
        make("⌃F10 (Control + F10)", 109, control, "⌃F10"),
    };
    return presets;
}

} // namespace velloran
