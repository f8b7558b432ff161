#include "keys/KeyboardLayout.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

namespace velloran::keys {

namespace {

KeyboardLayout layoutCalled(const std::string& name, const std::string& variant = "") {
    auto layout = KeyboardLayout::fromNames({"evdev", "pc105", name, variant, ""});
    EXPECT_TRUE(layout.ok()) << name;
    return std::move(layout).value();
}

} // namespace

TEST(KeyboardLayout, GivesLettersInLowerCase) {
    const KeyboardLayout us = layoutCalled("us");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_A, {}, false), "a");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_S, {}, false), "s");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_SPACE, {}, false), " ");
}

TEST(KeyboardLayout, KeepsShiftOnly) {
    const KeyboardLayout us = layoutCalled("us");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_1, {}, false), "1");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_1, {}, true), "!");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_A, {}, true), "A");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_SLASH, {}, true), "?");
}

TEST(KeyboardLayout, FollowsTheLayout) {
    const KeyboardLayout german = layoutCalled("de");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_Y, {}, false), "z");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_SEMICOLON, {}, false), "ö");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_102ND, {}, false), "<");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_MINUS, {}, true), "?");

    const KeyboardLayout french = layoutCalled("fr");
    EXPECT_EQ(french.charactersIgnoringModifiers(KEY_Q, {}, false), "a");
    EXPECT_EQ(french.charactersIgnoringModifiers(KEY_1, {}, false), "&");
    EXPECT_EQ(french.charactersIgnoringModifiers(KEY_1, {}, true), "1");

    const KeyboardLayout russian = layoutCalled("ru");
    EXPECT_EQ(russian.charactersIgnoringModifiers(KEY_A, {}, false), "ф");
    EXPECT_EQ(russian.charactersIgnoringModifiers(KEY_A, {}, true), "Ф");
}

TEST(KeyboardLayout, FollowsTheGroup) {
    const KeyboardLayout both = layoutCalled("us,ru");
    EXPECT_EQ(both.charactersIgnoringModifiers(KEY_A, {}, false), "a");
    EXPECT_EQ(both.charactersIgnoringModifiers(KEY_A, {1, 0}, false), "ф");
    EXPECT_EQ(both.charactersIgnoringModifiers(KEY_F1, {1, 0}, false), "F1");
}

TEST(KeyboardLayout, DeadKeysGiveNothing) {
    EXPECT_EQ(layoutCalled("de").charactersIgnoringModifiers(KEY_GRAVE, {}, false), "");
    EXPECT_EQ(layoutCalled("de").charactersIgnoringModifiers(KEY_EQUAL, {}, false), "");
    EXPECT_EQ(layoutCalled("fr").charactersIgnoringModifiers(KEY_LEFTBRACE, {}, false), "");
    EXPECT_EQ(layoutCalled("us", "intl").charactersIgnoringModifiers(KEY_APOSTROPHE, {}, false), "");
}

TEST(KeyboardLayout, ModifierAndLockKeysGiveNothing) {
    const KeyboardLayout us = layoutCalled("us");
    for (const int key : {KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL, KEY_LEFTALT, KEY_RIGHTALT,
                          KEY_LEFTMETA, KEY_RIGHTMETA, KEY_CAPSLOCK, KEY_NUMLOCK}) {
        EXPECT_EQ(us.charactersIgnoringModifiers(static_cast<std::uint32_t>(key), {}, false), "") << key;
        EXPECT_EQ(us.charactersIgnoringModifiers(static_cast<std::uint32_t>(key), {}, true), "") << key;
    }
    EXPECT_EQ(layoutCalled("de").charactersIgnoringModifiers(KEY_RIGHTALT, {}, false), "") << "the third level's key";
}

TEST(KeyboardLayout, KeysWithoutTextHaveReadableNames) {
    const KeyboardLayout us = layoutCalled("us");
    const auto name = [&us](std::uint32_t key) { return us.charactersIgnoringModifiers(key, {}, false); };
    EXPECT_EQ(name(KEY_F1), "F1");
    EXPECT_EQ(name(KEY_F12), "F12");
    EXPECT_EQ(name(KEY_F13), "F13");
    EXPECT_EQ(name(KEY_F24), "F24");
    EXPECT_EQ(name(KEY_UP), "Up");
    EXPECT_EQ(name(KEY_ENTER), "Return");
    EXPECT_EQ(name(KEY_TAB), "Tab");
    EXPECT_EQ(name(KEY_ESC), "Escape");
    EXPECT_EQ(name(KEY_BACKSPACE), "Back Space");
    EXPECT_EQ(name(KEY_INSERT), "Insert");
    EXPECT_EQ(name(KEY_SYSRQ), "Print");
    EXPECT_EQ(name(KEY_SCROLLLOCK), "Scroll Lock");
    EXPECT_EQ(name(KEY_PAUSE), "Pause");
    EXPECT_EQ(name(KEY_COMPOSE), "Menu");
    EXPECT_EQ(name(KEY_MUTE), "Audio Mute");
    EXPECT_EQ(name(KEY_PLAYPAUSE), "Audio Play");
    EXPECT_EQ(name(KEY_KP1), "Keypad 1");
    EXPECT_EQ(name(KEY_KPENTER), "Keypad ↩");
    EXPECT_EQ(name(KEY_KPSLASH), "/") << "gives text";
}

TEST(KeyboardLayout, NumLockIsKept) {
    constexpr KeyboardState numLockOn{0, 0x10};
    const KeyboardLayout us = layoutCalled("us");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_KP7, numLockOn, false), "7");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_KPDOT, numLockOn, false), ".");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_KPENTER, numLockOn, false), "Keypad ↩");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_A, numLockOn, false), "a");
    EXPECT_EQ(layoutCalled("de").charactersIgnoringModifiers(KEY_KPDOT, numLockOn, false), ",");
    EXPECT_EQ(us.charactersIgnoringModifiers(KEY_KP7, numLockOn, true), "Keypad 7") << "Shift takes it back";
}

TEST(KeyboardLayout, OtherLocksAreDropped) {
    constexpr KeyboardState allOthersOn{0, 0xEF};
    const KeyboardLayout german = layoutCalled("de");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_Q, allOthersOn, false), "q");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_1, allOthersOn, false), "1");
    EXPECT_EQ(german.charactersIgnoringModifiers(KEY_KP7, allOthersOn, false), "Keypad 7");
}

TEST(KeyboardLayout, EveryKeyThatIsNeitherDeadNorModifierGivesSomethingPrintable) {
    const KeyboardLayout us = layoutCalled("us");
    for (std::uint32_t key = KEY_ESC; key <= 247; ++key) {
        const std::string characters = us.charactersIgnoringModifiers(key, {}, false);
        for (const char one : characters) {
            EXPECT_GE(static_cast<unsigned char>(one), 0x20) << key;
            EXPECT_NE(one, '\x7f') << key;
        }
    }
    EXPECT_EQ(us.charactersIgnoringModifiers(100'000, {}, false), "Key 100000") << "no such key on this keyboard";
}

TEST(KeyboardLayout, ReadsKeymapText) {
    struct Release {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }

        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }

        void operator()(char* text) const { std::free(text); }
    };

    const std::unique_ptr<xkb_context, Release> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    const xkb_rule_names names{"evdev", "pc105", "de", "", ""};
    const std::unique_ptr<xkb_keymap, Release> keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    const std::unique_ptr<char, Release> text(xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1));

    const auto layout = KeyboardLayout::fromText(text.get());
    ASSERT_TRUE(layout.ok());
    EXPECT_EQ(layout.value().charactersIgnoringModifiers(KEY_Z, {}, false), "y");
}

TEST(KeyboardLayout, WhatCannotBeReadIsAnError) {
    EXPECT_FALSE(KeyboardLayout::fromText("").ok());
    EXPECT_FALSE(KeyboardLayout::fromText("xkb_keymap { nonsense").ok());
    EXPECT_FALSE(KeyboardLayout::fromNames({"evdev", "pc105", "no-such-layout", "", ""}).ok());
}

TEST(KeyboardLayout, TellsByWhichSymbolsAPressIsKnown) {
    constexpr std::uint32_t shift = 1;
    constexpr std::uint32_t super = 64;
    using Symbols = std::vector<PressedSymbol>;
    const KeyboardLayout us = layoutCalled("us");
    EXPECT_EQ(us.symbolsOfPress(KEY_F8, super), (Symbols{{XKB_KEY_F8, super}, {XKB_KEY_F8, super}}));
    EXPECT_EQ(us.symbolsOfPress(KEY_1, super | shift), (Symbols{{XKB_KEY_1, super | shift}, {XKB_KEY_exclam, super}}));
    const KeyboardLayout two = layoutCalled("us,de");
    EXPECT_EQ(two.symbolsOfPress(KEY_Z, super),
              (Symbols{{XKB_KEY_z, super}, {XKB_KEY_z, super}, {XKB_KEY_y, super}, {XKB_KEY_y, super}}));
    EXPECT_EQ(us.symbolsOfPress(5000, super), Symbols{}) << "no key at all";
}

TEST(KeyboardLayout, NamesTheSymbolThatAKeyGivesByItself) {
    const KeyboardLayout us = layoutCalled("us");
    EXPECT_EQ(us.symbolName(KEY_F8), "F8");
    EXPECT_EQ(us.symbolName(KEY_S), "s");
    EXPECT_EQ(us.symbolName(KEY_COMMA), "comma");
    EXPECT_EQ(us.symbolName(KEY_KP7), "KP_Home");
    EXPECT_EQ(us.symbolName(5000), "") << "no key at all";
    EXPECT_EQ(layoutCalled("de,us").symbolName(KEY_Z), "y");
}

TEST(KeyboardLayout, KnowsSymbolsByTheirNamesInAnyCase) {
    EXPECT_EQ(symbolNamed("F8"), XKB_KEY_F8);
    EXPECT_EQ(symbolNamed("return"), XKB_KEY_Return);
    EXPECT_EQ(symbolNamed("Q"), XKB_KEY_q);
    EXPECT_EQ(symbolNamed("no such key"), std::nullopt);
    EXPECT_EQ(symbolNamed(""), std::nullopt);
}

} // namespace velloran::keys
