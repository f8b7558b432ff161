// Arbitrary bytes as the JSON of a hotkey, and as the characters of a key press: whatever makes a combination can be
// written, and comes back equal.

#include "base/text.h"
#include "fuzz/require.h"
#include "hotkeys/HotkeyCombo.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace velloran;

namespace {

void checkThroughText(const HotkeyCombo& combo) {
    const auto bytes = json::write(encode(combo), json::Layout::compact);
    require(bytes.ok(), "a combination can be written");
    const auto value = json::parse(bytes.value());
    require(value.ok(), "what was written is JSON");
    const auto again = decodeHotkeyCombo(value.value());
    require(again == combo, "a combination comes back equal");
    require(std::hash<HotkeyCombo>()(*again) == std::hash<HotkeyCombo>()(combo),
            "equal combinations have equal hashes");
    require((combo.carbonModifiers() & ~0x1B00U) == 0, "only the four modifiers are registered");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes bytes(reinterpret_cast<const char*>(data), size);
    if (const auto value = json::parse(bytes)) {
        if (const auto combo = decodeHotkeyCombo(value.value())) {
            checkThroughText(*combo);
        }
    }

    KeyEvent event;
    constexpr std::size_t head = sizeof event.modifierFlags + sizeof event.keyCode;
    if (size >= head) {
        std::memcpy(&event.modifierFlags, data, sizeof event.modifierFlags);
        std::memcpy(&event.keyCode, data + sizeof event.modifierFlags, sizeof event.keyCode);
        event.charactersIgnoringModifiers = bytes.substr(head);
        const auto combo = HotkeyCombo::fromEvent(event);
        if (combo && isValidUtf8(*event.charactersIgnoringModifiers)) {
            require(!combo->display.empty(), "a combination has a label");
            checkThroughText(*combo);
        }
    }
    return 0;
}
