#include "platform/plasma/toolkitKeys.h"

#include <Qt>

#include "platform/HotKeys.h"

#include <gtest/gtest.h>

#include <string>

namespace velloran::platform::plasma {
namespace {

constexpr std::uint32_t keyS = 1;
constexpr std::uint32_t keyY = 16;
constexpr std::uint32_t keyZ = 6;
constexpr std::uint32_t key5 = 23;
constexpr std::uint32_t keypad5 = 87;
constexpr std::uint32_t keyTab = 48;
constexpr std::uint32_t keyF8 = 100;

constexpr int control = Qt::ControlModifier;
constexpr int shift = Qt::ShiftModifier;
constexpr int keypad = Qt::KeypadModifier;

QList<int> keysOf(std::uint32_t keyCode, std::uint32_t modifiers, const std::string& layout, std::uint32_t group = 0) {
    const auto known = keys::KeyboardLayout::fromNames({"evdev", "pc105", layout, "", ""});
    QList<int> found;
    for (const KeySequence& sequence : keySequencesOf(keyCode, modifiers, known.value(), group)) {
        found.append(sequence.key);
    }
    return found;
}

TEST(ToolkitKeys, AreASymbolWithModifiers) {
    EXPECT_EQ(keysOf(keyS, controlModifier, "us"), QList<int>{control | Qt::Key_S});
    EXPECT_EQ(keysOf(keyF8, controlModifier | optionModifier | commandModifier | shiftModifier, "us"),
              QList<int>{control | shift | Qt::AltModifier | Qt::MetaModifier | Qt::Key_F8});
    EXPECT_EQ(keysOf(keyF8, 0, "us"), QList<int>{Qt::Key_F8});
}

TEST(ToolkitKeys, FollowLayoutAndGroup) {
    EXPECT_EQ(keysOf(keyY, controlModifier, "de"), QList<int>{control | Qt::Key_Z});
    EXPECT_EQ(keysOf(keyZ, controlModifier, "us,de", 0), QList<int>{control | Qt::Key_Z});
    EXPECT_EQ(keysOf(keyZ, controlModifier, "us,de", 1), QList<int>{control | Qt::Key_Y});
    EXPECT_EQ(keysOf(keyZ, controlModifier, "us,de", 3), QList<int>{control | Qt::Key_Y})
        << "wraps, as the keymap does";
}

TEST(ToolkitKeys, ShiftBelongsToALetterAndIsUsedUpByWhatIsNone) {
    EXPECT_EQ(keysOf(keyS, controlModifier | shiftModifier, "us"), QList<int>{control | shift | Qt::Key_S});
    EXPECT_EQ(keysOf(key5, controlModifier | shiftModifier, "us"),
              (QList<int>{control | shift | Qt::Key_5, control | Qt::Key_Percent}));
    EXPECT_EQ(keysOf(key5, controlModifier | shiftModifier, "fr"),
              (QList<int>{control | shift | Qt::Key_ParenLeft, control | Qt::Key_5}));
    EXPECT_EQ(keysOf(keyTab, controlModifier | shiftModifier, "us"), QList<int>{control | shift | Qt::Key_Tab});
}

TEST(ToolkitKeys, KeypadIsNoOtherKeyWithAndWithoutNumLock) {
    EXPECT_EQ(keysOf(keypad5, controlModifier, "us"),
              (QList<int>{control | keypad | Qt::Key_Clear, control | keypad | Qt::Key_5}));
}

TEST(ToolkitKeys, WithControlOtherScriptsAreLatinToo) {
    const int yeru = 0x042b;
    EXPECT_EQ(keysOf(keyS, controlModifier, "us,ru", 1), (QList<int>{control | yeru, control | Qt::Key_S}));
    EXPECT_EQ(keysOf(keyS, optionModifier, "us,ru", 1), (QList<int>{Qt::AltModifier | yeru}));
    EXPECT_EQ(keysOf(keyS, controlModifier, "ru"), QList<int>{control | yeru});
}

TEST(ToolkitKeys, WhatTakesTheUserToAnotherScreenOfTheMachineIsNone) {
    EXPECT_EQ(keysOf(keyF8, controlModifier | optionModifier, "us"), QList<int>());
    EXPECT_EQ(keysOf(keyS, controlModifier | optionModifier, "us"), QList<int>{control | Qt::AltModifier | Qt::Key_S});
}

TEST(ToolkitKeys, KeyThatGivesNothingHasNone) {
    EXPECT_EQ(keysOf(999, controlModifier, "us"), QList<int>());
    constexpr std::uint32_t leftShift = 56;
    EXPECT_EQ(keysOf(leftShift, controlModifier, "us"), QList<int>());
}

} // namespace
} // namespace velloran::platform::plasma
