#include "keys/KeyCodes.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <set>
#include <vector>

namespace velloran::keys {

namespace {

constexpr std::uint32_t everyVirtualKey = 0x10000;
constexpr std::uint32_t everyEvdevCode = 0x1000;
constexpr std::uint32_t lastOriginalVirtualKey = 127;

} // namespace

TEST(KeyCodes, BothDirectionsAreInverse) {
    std::size_t keys = 0;
    for (std::uint32_t virtualKey = 0; virtualKey < everyVirtualKey; ++virtualKey) {
        if (const auto evdevCode = evdevFromVirtualKey(virtualKey)) {
            ++keys;
            EXPECT_EQ(virtualKeyFromEvdev(*evdevCode), virtualKey);
        }
    }
    std::size_t codes = 0;
    for (std::uint32_t evdevCode = 0; evdevCode < everyEvdevCode; ++evdevCode) {
        if (const auto virtualKey = virtualKeyFromEvdev(evdevCode)) {
            ++codes;
            EXPECT_EQ(evdevFromVirtualKey(*virtualKey), evdevCode);
        }
    }
    EXPECT_EQ(keys, codes);
    EXPECT_EQ(codes, lastCarriedEvdevCode + 1U) << "all that can be carried, and the function key";
}

TEST(KeyCodes, FarNumbersNameNoKey) {
    for (const std::uint32_t number : {0xFFFFFFFFU, 0x80000000U, 0x10000U, extendedVirtualKeyBase - 1U}) {
        EXPECT_FALSE(evdevFromVirtualKey(number).has_value()) << number;
        EXPECT_FALSE(virtualKeyFromEvdev(number).has_value()) << number;
    }
    EXPECT_FALSE(virtualKeyFromEvdev(KEY_RESERVED).has_value());
    EXPECT_FALSE(evdevFromVirtualKey(extendedVirtualKeyBase).has_value());
    EXPECT_FALSE(evdevFromVirtualKey(extendedVirtualKeyBase + KEY_A).has_value()) << "A has a number of its own";
}

TEST(KeyCodes, UnusedNumbersNameNoKey) {
    for (const std::uint32_t number : {52U, 66U, 68U, 70U, 77U, 108U, 112U, 128U}) {
        EXPECT_FALSE(evdevFromVirtualKey(number).has_value()) << number;
    }
}

TEST(KeyCodes, LettersDigitsAndPunctuation) {
    // In the order of the numbers, so that a slip by one shows.
    const std::vector<std::uint32_t> firstRow{KEY_A, KEY_S, KEY_D,     KEY_F, KEY_H, KEY_G, KEY_Z, KEY_X,
                                              KEY_C, KEY_V, KEY_102ND, KEY_B, KEY_Q, KEY_W, KEY_E, KEY_R,
                                              KEY_Y, KEY_T, KEY_1,     KEY_2, KEY_3, KEY_4, KEY_6, KEY_5};
    for (std::uint32_t virtualKey = 0; virtualKey < firstRow.size(); ++virtualKey) {
        EXPECT_EQ(evdevFromVirtualKey(virtualKey), firstRow[virtualKey]) << virtualKey;
    }
    const std::vector<std::uint32_t> secondRow{
        KEY_EQUAL, KEY_9,          KEY_7,         KEY_MINUS,     KEY_8,         KEY_0,     KEY_RIGHTBRACE,
        KEY_O,     KEY_U,          KEY_LEFTBRACE, KEY_I,         KEY_P,         KEY_ENTER, KEY_L,
        KEY_J,     KEY_APOSTROPHE, KEY_K,         KEY_SEMICOLON, KEY_BACKSLASH, KEY_COMMA, KEY_SLASH,
        KEY_N,     KEY_M,          KEY_DOT,       KEY_TAB,       KEY_SPACE,     KEY_GRAVE, KEY_BACKSPACE};
    for (std::uint32_t i = 0; i < secondRow.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(24 + i), secondRow[i]) << 24 + i;
    }
}

TEST(KeyCodes, KeysOfTheBuiltInShortcuts) {
    EXPECT_EQ(evdevFromVirtualKey(100), KEY_F8);
    EXPECT_EQ(evdevFromVirtualKey(101), KEY_F9);
    EXPECT_EQ(evdevFromVirtualKey(109), KEY_F10);
    EXPECT_EQ(evdevFromVirtualKey(49), KEY_SPACE);
    EXPECT_EQ(evdevFromVirtualKey(53), KEY_ESC);
    EXPECT_EQ(evdevFromVirtualKey(126), KEY_UP);
}

TEST(KeyCodes, FunctionKeysKeypadAndNavigation) {
    const std::vector<std::uint32_t> functionKeys{122, 120, 99, 118, 96, 97, 98, 100, 101, 109};
    for (std::uint32_t i = 0; i < functionKeys.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(functionKeys[i]), KEY_F1 + i) << "F" << i + 1;
    }
    EXPECT_EQ(evdevFromVirtualKey(103), KEY_F11);
    EXPECT_EQ(evdevFromVirtualKey(111), KEY_F12);
    const std::vector<std::uint32_t> upperFunctionKeys{105, 107, 113, 106, 64, 79, 80, 90};
    for (std::uint32_t i = 0; i < upperFunctionKeys.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(upperFunctionKeys[i]), KEY_F13 + i) << "F" << i + 13;
    }
    const std::vector<std::uint32_t> digits{KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5, KEY_KP6, KEY_KP7};
    for (std::uint32_t i = 0; i < digits.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(82 + i), digits[i]) << "keypad " << i;
    }
    EXPECT_EQ(evdevFromVirtualKey(91), KEY_KP8);
    EXPECT_EQ(evdevFromVirtualKey(92), KEY_KP9);
    const std::vector<std::uint32_t> navigation{KEY_INSERT, KEY_HOME, KEY_PAGEUP, KEY_DELETE};
    for (std::uint32_t i = 0; i < navigation.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(114 + i), navigation[i]) << 114 + i;
    }
    EXPECT_EQ(evdevFromVirtualKey(119), KEY_END);
    EXPECT_EQ(evdevFromVirtualKey(121), KEY_PAGEDOWN);
    const std::vector<std::uint32_t> arrows{KEY_LEFT, KEY_RIGHT, KEY_DOWN, KEY_UP};
    for (std::uint32_t i = 0; i < arrows.size(); ++i) {
        EXPECT_EQ(evdevFromVirtualKey(123 + i), arrows[i]) << 123 + i;
    }
}

TEST(KeyCodes, CoverAFullKeyboard) {
    std::set<std::uint32_t> keys;
    const auto addRange = [&keys](std::uint32_t first, std::uint32_t last) {
        for (std::uint32_t code = first; code <= last; ++code) {
            keys.insert(code);
        }
    };
    addRange(KEY_ESC, KEY_KPDOT); // main block, F1 to F10, keypad, Num Lock; Scroll Lock
    addRange(KEY_102ND, KEY_F12); // the extra ISO key
    addRange(KEY_KPENTER, KEY_RIGHTALT);
    addRange(KEY_HOME, KEY_DELETE);
    addRange(KEY_F13, KEY_F24);
    for (const int code :
         {KEY_PAUSE,    KEY_LEFTMETA,         KEY_RIGHTMETA, KEY_COMPOSE,      KEY_MUTE,   KEY_VOLUMEDOWN,
          KEY_VOLUMEUP, KEY_PLAYPAUSE,        KEY_NEXTSONG,  KEY_PREVIOUSSONG, KEY_STOPCD, KEY_YEN,
          KEY_RO,       KEY_KPCOMMA,          KEY_KPEQUAL,   KEY_HANGEUL,      KEY_HANJA,  KEY_HENKAN,
          KEY_MUHENKAN, KEY_KATAKANAHIRAGANA, KEY_POWER,     KEY_HELP}) {
        keys.insert(static_cast<std::uint32_t>(code));
    }
    for (const std::uint32_t code : keys) {
        EXPECT_TRUE(virtualKeyFromEvdev(code).has_value()) << code;
    }
}

TEST(KeyCodes, OriginalNumbersComeFirst) {
    std::size_t original = 0;
    for (std::uint32_t virtualKey = 0; virtualKey <= lastOriginalVirtualKey; ++virtualKey) {
        original += evdevFromVirtualKey(virtualKey).has_value() ? 1U : 0U;
    }
    EXPECT_EQ(original, 121U);
    EXPECT_EQ(virtualKeyFromEvdev(KEY_SYSRQ), extendedVirtualKeyBase + KEY_SYSRQ);
}

} // namespace velloran::keys
