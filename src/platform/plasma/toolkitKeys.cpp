#include "platform/plasma/toolkitKeys.h"

#include <QChar>
#include <Qt>

#include "keys/KeyCodes.h"
#include "platform/HotKeys.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <utility>

namespace velloran::platform::plasma {

namespace {

struct NamedKey {
    std::uint32_t symbol;
    Qt::Key key;
};

/// Symbols that are no characters. Those of the keypad are in here without saying that they are.
constexpr std::array namedKeys = std::to_array<NamedKey>({
    {XKB_KEY_Escape, Qt::Key_Escape},
    {XKB_KEY_Tab, Qt::Key_Tab},
    {XKB_KEY_BackSpace, Qt::Key_Backspace},
    {XKB_KEY_Return, Qt::Key_Return},
    {XKB_KEY_Insert, Qt::Key_Insert},
    {XKB_KEY_Delete, Qt::Key_Delete},
    {XKB_KEY_Pause, Qt::Key_Pause},
    {XKB_KEY_Print, Qt::Key_Print},
    {XKB_KEY_Sys_Req, Qt::Key_SysReq},
    {XKB_KEY_Clear, Qt::Key_Clear},
    {XKB_KEY_Home, Qt::Key_Home},
    {XKB_KEY_End, Qt::Key_End},
    {XKB_KEY_Left, Qt::Key_Left},
    {XKB_KEY_Up, Qt::Key_Up},
    {XKB_KEY_Right, Qt::Key_Right},
    {XKB_KEY_Down, Qt::Key_Down},
    {XKB_KEY_Prior, Qt::Key_PageUp},
    {XKB_KEY_Next, Qt::Key_PageDown},
    {XKB_KEY_Menu, Qt::Key_Menu},
    {XKB_KEY_Help, Qt::Key_Help},
    {XKB_KEY_Scroll_Lock, Qt::Key_ScrollLock},
    {XKB_KEY_KP_Enter, Qt::Key_Enter},
    {XKB_KEY_KP_Home, Qt::Key_Home},
    {XKB_KEY_KP_Left, Qt::Key_Left},
    {XKB_KEY_KP_Up, Qt::Key_Up},
    {XKB_KEY_KP_Right, Qt::Key_Right},
    {XKB_KEY_KP_Down, Qt::Key_Down},
    {XKB_KEY_KP_Prior, Qt::Key_PageUp},
    {XKB_KEY_KP_Next, Qt::Key_PageDown},
    {XKB_KEY_KP_End, Qt::Key_End},
    {XKB_KEY_KP_Begin, Qt::Key_Clear},
    {XKB_KEY_KP_Insert, Qt::Key_Insert},
    {XKB_KEY_KP_Delete, Qt::Key_Delete},
    {XKB_KEY_XF86AudioLowerVolume, Qt::Key_VolumeDown},
    {XKB_KEY_XF86AudioMute, Qt::Key_VolumeMute},
    {XKB_KEY_XF86AudioRaiseVolume, Qt::Key_VolumeUp},
    {XKB_KEY_XF86AudioPlay, Qt::Key_MediaPlay},
    {XKB_KEY_XF86AudioStop, Qt::Key_MediaStop},
    {XKB_KEY_XF86AudioPrev, Qt::Key_MediaPrevious},
    {XKB_KEY_XF86AudioNext, Qt::Key_MediaNext},
    {XKB_KEY_XF86HomePage, Qt::Key_HomePage},
    {XKB_KEY_XF86Mail, Qt::Key_LaunchMail},
    {XKB_KEY_XF86Calculator, Qt::Key_Calculator},
    {XKB_KEY_XF86Tools, Qt::Key_Tools},
});

constexpr std::uint32_t shiftBit = 1U << 0U;
constexpr std::uint32_t controlBit = 1U << 2U;
constexpr std::uint32_t altBit = 1U << 3U;
/// Where Num Lock is in nearly every keymap.
constexpr std::uint32_t numLockBit = 1U << 4U;

bool isOfKeypad(std::uint32_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

bool isLatin(std::uint32_t symbol) {
    return symbol <= 0xff;
}

/// The toolkit's number of a symbol; 0 where it has none.
int toolkitKey(std::uint32_t symbol) {
    const int ofKeypad = isOfKeypad(symbol) ? static_cast<int>(Qt::KeypadModifier) : 0;
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35) {
        return Qt::Key_F1 + static_cast<int>(symbol - XKB_KEY_F1);
    }
    const auto* const named = std::find_if(namedKeys.begin(), namedKeys.end(),
                                           [symbol](const NamedKey& key) { return key.symbol == symbol; });
    if (named != namedKeys.end()) {
        return named->key | ofKeypad;
    }
    const char32_t character = xkb_keysym_to_utf32(symbol);
    if (character < U' ' || character == U'\x7f') {
        return 0;
    }
    const char32_t upper = QChar::toUpper(character);
    // Two letters of Latin 1 have their capitals elsewhere, and count as themselves.
    return static_cast<int>(upper > 0xff && isLatin(symbol) ? character : upper) | ofKeypad;
}

int toolkitModifiers(std::uint32_t modifiers) {
    constexpr std::array<std::pair<std::uint32_t, Qt::KeyboardModifier>, 4> bits{
        {{shiftModifier, Qt::ShiftModifier},
         {controlModifier, Qt::ControlModifier},
         {optionModifier, Qt::AltModifier},
         {commandModifier, Qt::MetaModifier}}};
    int result = 0;
    for (const auto& [ours, theirs] : bits) {
        result |= (modifiers & ours) != 0 ? static_cast<int>(theirs) : 0;
    }
    return result;
}

bool isLetter(int key) {
    return key < 0x10ffff && QChar::isLetter(static_cast<char32_t>(key));
}

/// The symbols of the key alone and with the modifiers that choose another.
struct Symbols {
    std::uint32_t alone = 0;
    std::uint32_t chosen = 0;
};

Symbols symbolsOf(const keys::KeyboardLayout& layout, std::uint32_t group, std::uint32_t evdevCode,
                  std::uint32_t chosenBy) {
    const auto found = layout.symbolsOfPressIn(group, evdevCode, chosenBy);
    return found.empty() ? Symbols() : Symbols{found.front().symbol, found.back().symbol};
}

/// Whether that press takes the user to another of the machine's screens, which comes before all else.
bool isForTheMachine(const keys::KeyboardLayout& layout, std::uint32_t group, std::uint32_t evdevCode,
                     std::uint32_t modifiers) {
    constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 3> bits{
        {{shiftModifier, shiftBit}, {controlModifier, controlBit}, {optionModifier, altBit}}};
    std::uint32_t held = 0;
    for (const auto& [ours, theirs] : bits) {
        held |= (modifiers & ours) != 0 ? theirs : 0;
    }
    const std::uint32_t symbol = symbolsOf(layout, group, evdevCode, held).chosen;
    return symbol >= XKB_KEY_XF86Switch_VT_1 && symbol <= XKB_KEY_XF86Switch_VT_12;
}

class Sequences {
public:
    void add(int key, int modifiers) {
        const KeySequence sequence{key | modifiers};
        if (key != 0 && !found_.contains(sequence)) {
            found_.append(sequence);
        }
    }

    [[nodiscard]] const KeySequenceList& found() const { return found_; }

private:
    KeySequenceList found_;
};

} // namespace

KeySequenceList keySequencesOf(std::uint32_t keyCode, std::uint32_t modifiers, const keys::KeyboardLayout& layout,
                               std::uint32_t group) {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    if (!evdevCode || isForTheMachine(layout, group, *evdevCode, modifiers)) {
        return {};
    }
    const int held = toolkitModifiers(modifiers);
    const bool isShifted = (modifiers & shiftModifier) != 0;
    const Symbols symbols = symbolsOf(layout, group, *evdevCode, isShifted ? shiftBit : 0);
    Sequences sequences;
    const int alone = toolkitKey(symbols.alone);
    sequences.add(alone, held);
    if (isOfKeypad(symbols.alone)) {
        sequences.add(toolkitKey(symbolsOf(layout, group, *evdevCode, numLockBit).chosen), held);
    } else if (const int chosen = toolkitKey(symbols.chosen); isShifted && chosen != alone) {
        sequences.add(chosen, isLetter(chosen) ? held : held & ~static_cast<int>(Qt::ShiftModifier));
    }
    // With Control, other scripts count as the Latin letters that the keyboard has beside them.
    if ((modifiers & controlModifier) != 0 && !isLatin(symbols.alone) && isLetter(alone)) {
        for (const keys::PressedSymbol& press : layout.symbolsOfPress(*evdevCode, 0)) {
            if (isLatin(press.symbol)) {
                sequences.add(toolkitKey(press.symbol), held);
                break;
            }
        }
    }
    return sequences.found();
}

} // namespace velloran::platform::plasma
