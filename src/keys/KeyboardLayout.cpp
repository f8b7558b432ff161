#include "keys/KeyboardLayout.h"

#include "keys/KeyNames.h"

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <string_view>

namespace velloran::keys {

namespace {

constexpr std::uint32_t evdevOffset = 8;

struct ReleaseContext {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

struct ReleaseState {
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};

using Context = std::unique_ptr<xkb_context, ReleaseContext>;
using State = std::unique_ptr<xkb_state, ReleaseState>;

Context makeContext() {
    Context context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (context) {
        // What goes wrong is told by the result; the library would print it as well.
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    }
    return context;
}

std::string textOfKey(xkb_state* state, xkb_keycode_t key) {
    const int length = xkb_state_key_get_utf8(state, key, nullptr, 0);
    if (length <= 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    xkb_state_key_get_utf8(state, key, text.data(), text.size());
    text.pop_back();
    return text;
}

/// The modifiers that the Num Lock key locks on this keyboard; none where it has no such key. Which ones these are is
/// for each keymap to say.
xkb_mod_mask_t numLockModifiers(xkb_keymap* keymap) {
    const State state(xkb_state_new(keymap));
    if (!state) {
        return 0;
    }
    const xkb_keycode_t last = xkb_keymap_max_keycode(keymap);
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= last; ++key) {
        if (xkb_state_key_get_one_sym(state.get(), key) == XKB_KEY_Num_Lock) {
            xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
            return xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED);
        }
    }
    return 0;
}

bool isControlText(std::string_view text) {
    return text.size() == 1 && (static_cast<unsigned char>(text.front()) < 0x20 || text.front() == '\x7f');
}

} // namespace

void KeyboardLayout::ReleaseKeymap::operator()(xkb_keymap* keymap) const {
    xkb_keymap_unref(keymap);
}

Result<KeyboardLayout> KeyboardLayout::fromText(const std::string& keymapText) {
    const Context context = makeContext();
    xkb_keymap* const keymap = context
                                   ? xkb_keymap_new_from_buffer(context.get(), keymapText.data(), keymapText.size(),
                                                                XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS)
                                   : nullptr;
    if (keymap == nullptr) {
        return Error{"the keymap text cannot be read"};
    }
    return KeyboardLayout(keymap);
}

Result<KeyboardLayout> KeyboardLayout::fromNames(const LayoutNames& names) {
    const Context context = makeContext();
    const xkb_rule_names rules{names.rules.c_str(), names.model.c_str(), names.layout.c_str(), names.variant.c_str(),
                               names.options.c_str()};
    xkb_keymap* const keymap =
        context ? xkb_keymap_new_from_names(context.get(), &rules, XKB_KEYMAP_COMPILE_NO_FLAGS) : nullptr;
    if (keymap == nullptr) {
        return Error{"no keyboard layout is called " + names.layout};
    }
    return KeyboardLayout(keymap);
}

std::string KeyboardLayout::charactersIgnoringModifiers(std::uint32_t evdevCode, const KeyboardState& keyboard,
                                                        bool shiftHeld) const {
    const State state(xkb_state_new(keymap_.get()));
    if (!state) {
        return {};
    }
    const xkb_keycode_t key = evdevCode + evdevOffset;
    const xkb_mod_index_t shift = xkb_keymap_mod_get_index(keymap_.get(), XKB_MOD_NAME_SHIFT);
    const xkb_mod_mask_t held = shiftHeld && shift != XKB_MOD_INVALID ? xkb_mod_mask_t{1} << shift : 0;
    const xkb_mod_mask_t locked = keyboard.lockedModifiers & numLockModifiers(keymap_.get());
    xkb_state_update_mask(state.get(), held, 0, locked, 0, 0, keyboard.group);

    const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state.get(), key);
    if (isModifierSymbol(symbol) || isDeadSymbol(symbol)) {
        return {};
    }
    std::string text = textOfKey(state.get(), key);
    if (text.empty() || isControlText(text)) {
        return nameOfKey(evdevCode, symbol);
    }
    return text;
}

std::string KeyboardLayout::symbolName(std::uint32_t evdevCode) const {
    for (const PressedSymbol& press : symbolsOfPress(evdevCode, 0)) {
        std::array<char, 64> name{};
        if (press.symbol != XKB_KEY_NoSymbol && xkb_keysym_get_name(press.symbol, name.data(), name.size()) > 0) {
            return name.data();
        }
    }
    return {};
}

std::vector<PressedSymbol> KeyboardLayout::symbolsOfPress(std::uint32_t evdevCode, std::uint32_t modifiers) const {
    std::vector<PressedSymbol> found;
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap_.get(), evdevCode + evdevOffset);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        const auto inGroup = symbolsOfPressIn(group, evdevCode, modifiers);
        found.insert(found.end(), inGroup.begin(), inGroup.end());
    }
    return found;
}

std::vector<PressedSymbol> KeyboardLayout::symbolsOfPressIn(std::uint32_t group, std::uint32_t evdevCode,
                                                            std::uint32_t modifiers) const {
    std::vector<PressedSymbol> found;
    const State state(xkb_state_new(keymap_.get()));
    const xkb_keycode_t key = evdevCode + evdevOffset;
    if (!state || xkb_keymap_num_layouts_for_key(keymap_.get(), key) == 0) {
        return found;
    }
    const xkb_keysym_t* symbols = nullptr;
    if (xkb_keymap_key_get_syms_by_level(keymap_.get(), key, group, 0, &symbols) == 1) {
        found.push_back({*symbols, modifiers});
    }
    xkb_state_update_mask(state.get(), modifiers, 0, 0, 0, 0, group);
    const xkb_mod_mask_t used = xkb_state_key_get_consumed_mods2(state.get(), key, XKB_CONSUMED_MODE_XKB);
    found.push_back({xkb_state_key_get_one_sym(state.get(), key), modifiers & ~used});
    return found;
}

std::optional<std::uint32_t> symbolNamed(const std::string& name) {
    const xkb_keysym_t symbol = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    return symbol != XKB_KEY_NoSymbol ? std::optional<std::uint32_t>(symbol) : std::nullopt;
}

} // namespace velloran::keys
