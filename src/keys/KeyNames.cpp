#include "keys/KeyNames.h"

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <string_view>

namespace velloran::keys {

namespace {

struct PlaceName {
    std::uint32_t evdevCode;
    std::string_view name;
};

// Layouts give many of these keys other symbols: F13 is "Tools" in most, and the keypad's 7 is "KP_Home" while Num Lock
// is off.
constexpr std::array placeNames = std::to_array<PlaceName>({
    {KEY_F1, "F1"},        {KEY_F2, "F2"},        {KEY_F3, "F3"},          {KEY_F4, "F4"},
    {KEY_F5, "F5"},        {KEY_F6, "F6"},        {KEY_F7, "F7"},          {KEY_F8, "F8"},
    {KEY_F9, "F9"},        {KEY_F10, "F10"},      {KEY_F11, "F11"},        {KEY_F12, "F12"},
    {KEY_F13, "F13"},      {KEY_F14, "F14"},      {KEY_F15, "F15"},        {KEY_F16, "F16"},
    {KEY_F17, "F17"},      {KEY_F18, "F18"},      {KEY_F19, "F19"},        {KEY_F20, "F20"},
    {KEY_F21, "F21"},      {KEY_F22, "F22"},      {KEY_F23, "F23"},        {KEY_F24, "F24"},
    {KEY_KP0, "Keypad 0"}, {KEY_KP1, "Keypad 1"}, {KEY_KP2, "Keypad 2"},   {KEY_KP3, "Keypad 3"},
    {KEY_KP4, "Keypad 4"}, {KEY_KP5, "Keypad 5"}, {KEY_KP6, "Keypad 6"},   {KEY_KP7, "Keypad 7"},
    {KEY_KP8, "Keypad 8"}, {KEY_KP9, "Keypad 9"}, {KEY_KPDOT, "Keypad ."}, {KEY_KPENTER, "Keypad ↩"},
    {KEY_SYSRQ, "Print"},  {KEY_PAUSE, "Pause"},  {KEY_INSERT, "Insert"},  {KEY_COMPOSE, "Menu"},
});

/// "XF86AudioPlay" becomes "Audio Play", "Scroll_Lock" becomes "Scroll Lock".
std::string readable(std::string_view symbolName) {
    constexpr std::string_view vendorPrefix = "XF86";
    if (symbolName.starts_with(vendorPrefix)) {
        symbolName.remove_prefix(vendorPrefix.size());
    }
    std::string words;
    char before = ' ';
    for (const char letter : symbolName) {
        const bool isCapital = letter >= 'A' && letter <= 'Z';
        const bool followsSmall = before >= 'a' && before <= 'z';
        if (isCapital && followsSmall) {
            words += ' ';
        }
        words += letter == '_' ? ' ' : letter;
        before = letter;
    }
    return words;
}

} // namespace

std::string nameOfKey(std::uint32_t evdevCode, std::uint32_t keySymbol) {
    for (const PlaceName& place : placeNames) {
        if (place.evdevCode == evdevCode) {
            return std::string(place.name);
        }
    }
    std::array<char, 64> symbolName{};
    if (keySymbol != XKB_KEY_NoSymbol && xkb_keysym_get_name(keySymbol, symbolName.data(), symbolName.size()) > 0) {
        return readable(symbolName.data());
    }
    return "Key " + std::to_string(evdevCode);
}

bool isModifierSymbol(std::uint32_t keySymbol) {
    const bool isCommon = keySymbol >= XKB_KEY_Shift_L && keySymbol <= XKB_KEY_Hyper_R;
    const bool isLevelOrGroup = keySymbol >= XKB_KEY_ISO_Lock && keySymbol <= XKB_KEY_ISO_Level5_Lock;
    return isCommon || isLevelOrGroup || keySymbol == XKB_KEY_Mode_switch || keySymbol == XKB_KEY_Num_Lock;
}

bool isDeadSymbol(std::uint32_t keySymbol) {
    return keySymbol >= XKB_KEY_dead_grave && keySymbol <= XKB_KEY_dead_longsolidusoverlay;
}

} // namespace velloran::keys
