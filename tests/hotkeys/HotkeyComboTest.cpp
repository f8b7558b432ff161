#include "hotkeys/HotkeyCombo.h"

#include "platform/HotKeys.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace velloran {

namespace {

constexpr std::uint64_t shift = 0x20000;
constexpr std::uint64_t control = 0x40000;
constexpr std::uint64_t option = 0x80000;
constexpr std::uint64_t command = 0x100000;
constexpr std::uint64_t functionKey = 0x800000;
constexpr std::uint64_t capsLock = 0x10000;

std::optional<HotkeyCombo> pressed(std::uint64_t flags, std::uint16_t keyCode, std::optional<std::string> characters) {
    return HotkeyCombo::fromEvent(KeyEvent{flags, keyCode, std::move(characters)});
}

std::string displayOf(std::uint64_t flags, std::uint16_t keyCode, const std::string& characters) {
    const auto combo = pressed(flags, keyCode, characters);
    return combo ? combo->display : "(none)";
}

} // namespace

TEST(HotkeyCombo, ModifierBits) {
    EXPECT_EQ(static_cast<std::uint64_t>(ModifierFlags::shift), shift);
    EXPECT_EQ(static_cast<std::uint64_t>(ModifierFlags::control), control);
    EXPECT_EQ(static_cast<std::uint64_t>(ModifierFlags::option), option);
    EXPECT_EQ(static_cast<std::uint64_t>(ModifierFlags::command), command);
    EXPECT_EQ(HotkeyCombo::deviceIndependentMask, 0xFFFF0000U);
}

TEST(HotkeyCombo, KeyWithoutModifierIsNone) {
    EXPECT_EQ(pressed(0, 0, "a"), std::nullopt);
    EXPECT_EQ(pressed(capsLock, 0, "A"), std::nullopt);
    EXPECT_EQ(pressed(functionKey | 0xFFFF, 100, "F8"), std::nullopt);
}

TEST(HotkeyCombo, ShiftAloneIsEnough) {
    const HotkeyCombo expected{shift, 0, "⇧A"};
    EXPECT_EQ(pressed(shift, 0, "a"), expected);
    EXPECT_EQ(pressed(shift, 0, "A"), expected);
}

TEST(HotkeyCombo, EachOfTheFourModifiersIsEnough) {
    EXPECT_EQ(displayOf(control, 1, "s"), "⌃S");
    EXPECT_EQ(displayOf(option, 1, "s"), "⌥S");
    EXPECT_EQ(displayOf(shift, 1, "s"), "⇧S");
    EXPECT_EQ(displayOf(command, 1, "s"), "⌘S");
}

TEST(HotkeyCombo, AllModifiersTogether) {
    const auto combo = pressed(control | option | command | shift, 40, "k");
    ASSERT_TRUE(combo);
    EXPECT_EQ(combo->display, "⌃⌥⇧⌘K");
    EXPECT_EQ(combo->carbonModifiers(), 0x1B00U);
    EXPECT_EQ(combo->keyCode, 40U);
}

TEST(HotkeyCombo, GlyphsHaveAFixedOrder) {
    EXPECT_EQ(displayOf(command | option, 0, "a"), "⌥⌘A");
    EXPECT_EQ(displayOf(command | shift, 3, "F"), "⇧⌘F");
    EXPECT_EQ(displayOf(shift | control, 18, "!"), "⌃⇧!");
}

TEST(HotkeyCombo, DeviceIndependentBitsAreKeptAsTheyCame) {
    const auto combo = pressed(control | functionKey | capsLock | 0x2101, 100, "F8");
    ASSERT_TRUE(combo);
    EXPECT_EQ(combo->display, "⌃F8");
    EXPECT_EQ(combo->modifierFlagsRaw, control | functionKey | capsLock);
    EXPECT_EQ(combo->carbonModifiers(), 0x1000U);
}

TEST(HotkeyCombo, BitsAboveTheMaskAreDropped) {
    EXPECT_EQ(pressed(control | (std::uint64_t{1} << 32), 1, "s")->modifierFlagsRaw, control);
}

TEST(HotkeyCombo, DeadKeyIsNone) {
    EXPECT_EQ(pressed(control, 33, ""), std::nullopt);
    EXPECT_EQ(pressed(control, 33, std::nullopt), std::nullopt);
}

TEST(HotkeyCombo, KeyCodeIsWidened) {
    EXPECT_EQ(pressed(control, 0xFFFF, "x")->keyCode, 0xFFFFU);
}

TEST(HotkeyCombo, NamedKeysShowTheirNamesWhateverTheyGive) {
    const std::vector<std::pair<std::uint16_t, std::string>> names{
        {36, "↩"},   {48, "⇥"},   {49, "Space"}, {51, "⌫"},    {117, "⌦"},   {53, "⎋"},  {123, "←"},
        {124, "→"},  {126, "↑"},  {125, "↓"},    {115, "↖"},   {119, "↘"},   {116, "⇞"}, {121, "⇟"},
        {122, "F1"}, {120, "F2"}, {99, "F3"},    {118, "F4"},  {96, "F5"},   {97, "F6"}, {98, "F7"},
        {100, "F8"}, {101, "F9"}, {109, "F10"},  {103, "F11"}, {111, "F12"},
    };
    for (const auto& [code, name] : names) {
        EXPECT_EQ(displayOf(control, code, "zz"), "⌃" + name) << code;
    }
    std::size_t named = 0;
    for (std::uint16_t code = 0; code < 256; ++code) {
        named += displayOf(control, code, "zz") != "⌃ZZ" ? 1U : 0U;
    }
    EXPECT_EQ(named, names.size());
}

TEST(HotkeyCombo, OtherKeysShowTheirCharactersInUpperCase) {
    EXPECT_EQ(displayOf(control, 41, "ö"), "⌃Ö");
    EXPECT_EQ(displayOf(control, 27, "ß"), "⌃SS");
    EXPECT_EQ(displayOf(control, 34, "i"), "⌃I");
    EXPECT_EQ(displayOf(control, 18, "1"), "⌃1");
    EXPECT_EQ(displayOf(control, 105, "F13"), "⌃F13");
}

TEST(HotkeyCombo, EqualityAndHashTakeTheDisplay) {
    const HotkeyCombo recorded{command | option, 0, "⌥⌘A"};
    const HotkeyCombo offered{command | option, 0, "⌘⌥A"};
    EXPECT_NE(recorded, offered);
    EXPECT_NE(recorded, (HotkeyCombo{command | option, 1, "⌥⌘A"}));
    EXPECT_NE(recorded, (HotkeyCombo{command, 0, "⌥⌘A"}));
    EXPECT_EQ(recorded, (HotkeyCombo{command | option, 0, "⌥⌘A"}));
    const std::unordered_set<HotkeyCombo> all{recorded, offered, recorded, {command, 0, "⌥⌘A"}};
    EXPECT_EQ(all.size(), 3U);
    EXPECT_TRUE(all.contains(HotkeyCombo{command | option, 0, "⌥⌘A"}));
    const std::hash<HotkeyCombo> hash;
    EXPECT_NE(hash(recorded), hash(offered));
    EXPECT_NE(hash(recorded), hash(HotkeyCombo{command | option, 1, "⌥⌘A"}));
    EXPECT_NE(hash(recorded), hash(HotkeyCombo{command, 0, "⌥⌘A"}));
}

TEST(HotkeyCombo, NewRecordIsEmpty) {
    EXPECT_EQ(HotkeyCombo(), (HotkeyCombo{0, 0, ""}));
    EXPECT_EQ(KeyEvent().modifierFlags, 0U);
    EXPECT_EQ(KeyEvent().keyCode, 0U);
    EXPECT_EQ(KeyEvent().charactersIgnoringModifiers, std::nullopt);
}

TEST(HotkeyCombo, ModifierFlagsAreTheRawValue) {
    const HotkeyCombo combo{control | option | functionKey, 1, "⌃⌥S"};
    EXPECT_EQ(static_cast<std::uint64_t>(combo.modifierFlags()), control | option | functionKey);
    EXPECT_TRUE(contains(combo.modifierFlags(), ModifierFlags::control | ModifierFlags::option));
    EXPECT_FALSE(contains(combo.modifierFlags(), ModifierFlags::control | ModifierFlags::shift));
}

TEST(HotkeyCombo, RegistrationBitsFollowTheFourModifiersAlone) {
    const auto bits = [](std::uint64_t flags) { return HotkeyCombo{flags, 0, ""}.carbonModifiers(); };
    EXPECT_EQ(bits(0), 0U);
    EXPECT_EQ(bits(command), platform::commandModifier);
    EXPECT_EQ(bits(option), platform::optionModifier);
    EXPECT_EQ(bits(control), platform::controlModifier);
    EXPECT_EQ(bits(shift), platform::shiftModifier);
    EXPECT_EQ(bits(command), 0x100U);
    EXPECT_EQ(bits(option), 0x800U);
    EXPECT_EQ(bits(control), 0x1000U);
    EXPECT_EQ(bits(shift), 0x200U);
    EXPECT_EQ(bits(~std::uint64_t{0} & ~(command | option | control | shift)), 0U);
    EXPECT_EQ(bits(~std::uint64_t{0}), 0x1B00U);
}

} // namespace velloran
