#include "platform/HotKeys.h"
#include "platform/x11/ButtonMapping.h"
#include "platform/x11/ModifierBits.h"

#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <set>

namespace velloran::platform::x11 {

TEST(ButtonMapping, GoesBackwards) {
    const ButtonMapping rightHanded({1, 2, 3, 4, 5});
    EXPECT_EQ(rightHanded.physicalButton(EventButton::left), 1);
    EXPECT_EQ(rightHanded.physicalButton(EventButton::center), 2);
    EXPECT_EQ(rightHanded.physicalButton(EventButton::right), 3);

    const ButtonMapping odd({4, 1, 0, 3, 3});
    EXPECT_EQ(odd.physicalButton(EventButton::left), 2);
    EXPECT_EQ(odd.physicalButton(EventButton::center), std::nullopt);
    EXPECT_EQ(odd.physicalButton(EventButton::right), 4) << "the first of several";

    EXPECT_EQ(ButtonMapping({}).physicalButton(EventButton::left), std::nullopt);
}

TEST(ModifierBits, AreCustomaryWhereNoKeySaysOtherwise) {
    EXPECT_EQ(findModifierBits({}), ModifierBits());
    EXPECT_EQ(ModifierBits().stateOf(commandModifier | optionModifier | controlModifier | shiftModifier),
              XCB_MOD_MASK_4 | XCB_MOD_MASK_1 | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT);
}

TEST(ModifierBits, FollowTheKeys) {
    ModifierSymbols symbols;
    symbols[3] = {XKB_KEY_Super_L, XKB_KEY_Super_R};
    symbols[4] = {XKB_KEY_Scroll_Lock};
    symbols[5] = {XKB_KEY_Alt_R, XKB_KEY_Meta_R};
    symbols[7] = {XKB_KEY_Num_Lock};
    const ModifierBits bits = findModifierBits(symbols);
    EXPECT_EQ(bits.command, XCB_MOD_MASK_1);
    EXPECT_EQ(bits.option, XCB_MOD_MASK_3);
    EXPECT_EQ(bits.locks, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_5);
}

TEST(ModifierBits, AModifierGoesBeforeALock) {
    ModifierSymbols symbols;
    symbols[4] = {XKB_KEY_Super_L, XKB_KEY_Num_Lock};
    const ModifierBits bits = findModifierBits(symbols);
    EXPECT_EQ(bits.command, XCB_MOD_MASK_2);
    EXPECT_EQ(bits.locks, XCB_MOD_MASK_LOCK);
}

TEST(ModifierBits, EveryCombinationOfLocksOnce) {
    ModifierBits bits;
    bits.locks = XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_5;
    const std::vector<std::uint16_t> states = bits.withLocks(XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(states.size(), 8U);
    EXPECT_EQ(states.front(), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(std::set<std::uint16_t>(states.begin(), states.end()).size(), 8U);
    for (const std::uint16_t state : states) {
        EXPECT_EQ(bits.relevant(state), XCB_MOD_MASK_CONTROL);
    }
    constexpr std::uint16_t buttonDown = XCB_KEY_BUT_MASK_BUTTON_1;
    EXPECT_EQ(bits.relevant(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | buttonDown),
              XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT);
}

} // namespace velloran::platform::x11
