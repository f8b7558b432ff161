#include "hotkeys/HotkeyPreset.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace velloran {

namespace {

struct Choice {
    std::string label;
    std::uint32_t keyCode;
    std::uint64_t flags;
    std::string display;
};

} // namespace

TEST(HotkeyPreset, OffersTheEightChoicesInOrder) {
    const std::vector<Choice> choices{
        {"⌘⌥A  (Command + Option + A)", 0, 0x180000, "⌘⌥A"}, {"⌃⌥C  (Control + Option + C)", 8, 0xC0000, "⌃⌥C"},
        {"⌃⌥S  (Control + Option + S)", 1, 0xC0000, "⌃⌥S"},  {"⌘⇧F  (Command + Shift + F)", 3, 0x120000, "⌘⇧F"},
        {"⌃⌥Z  (Control + Option + Z)", 6, 0xC0000, "⌃⌥Z"},  {"⌃F8  (Control + F8)", 100, 0x40000, "⌃F8"},
        {"⌃F9  (Control + F9)", 101, 0x40000, "⌃F9"},        {"⌃F10 (Control + F10)", 109, 0x40000, "⌃F10"},
    };
    const auto& all = HotkeyPreset::all();
    ASSERT_EQ(all.size(), choices.size());
    for (std::size_t at = 0; at < choices.size(); ++at) {
        EXPECT_EQ(all[at].label, choices[at].label);
        EXPECT_EQ(all[at].combo, (HotkeyCombo{choices[at].flags, choices[at].keyCode, choices[at].display}));
    }
}

TEST(HotkeyPreset, ListIsBuiltOnceWithIdentifiersOfItsOwn) {
    const auto& first = HotkeyPreset::all();
    const auto& second = HotkeyPreset::all();
    EXPECT_EQ(&first, &second);
    std::set<Uuid> ids;
    for (const HotkeyPreset& preset : first) {
        EXPECT_NE(preset.id, Uuid());
        ids.insert(preset.id);
    }
    EXPECT_EQ(ids.size(), first.size());
}

TEST(HotkeyPreset, RecordedCommandOptionAIsNotTheFirstChoice) {
    const auto recorded = HotkeyCombo::fromEvent({0x180000, 0, "a"});
    ASSERT_TRUE(recorded);
    EXPECT_EQ(recorded->display, "⌥⌘A");
    EXPECT_NE(*recorded, HotkeyPreset::all().front().combo);
}

TEST(HotkeyPreset, RecordedControlOptionSIsTheThirdChoice) {
    EXPECT_EQ(HotkeyCombo::fromEvent({0xC0000, 1, "s"}), HotkeyPreset::all().at(2).combo);
}

TEST(HotkeyPreset, RecordedControlF8MayCarryAnotherBit) {
    EXPECT_EQ(HotkeyCombo::fromEvent({0x40000, 100, "F8"}), HotkeyPreset::all().at(5).combo);
    const auto recorded = HotkeyCombo::fromEvent({0x840000, 100, "F8"});
    ASSERT_TRUE(recorded);
    EXPECT_EQ(recorded->display, "⌃F8");
    EXPECT_NE(*recorded, HotkeyPreset::all().at(5).combo);
}

} // namespace velloran
