#include "platform/portal/shortcutTrigger.h"

#include "platform/HotKeys.h"

#include <gtest/gtest.h>

namespace velloran::platform::portal {
namespace {

constexpr std::uint32_t keyS = 1;
constexpr std::uint32_t keyZ = 6;
constexpr std::uint32_t keyF8 = 100;

keys::KeyboardLayout layoutCalled(const std::string& name) {
    return keys::KeyboardLayout::fromNames({"evdev", "pc105", name, "", ""}).value();
}

TEST(ShortcutTrigger, NamesModifiersAndTheSymbolOfTheKey) {
    const auto us = layoutCalled("us");
    EXPECT_EQ(triggerOf(keyF8, controlModifier, us), "CTRL+F8");
    EXPECT_EQ(triggerOf(keyS, commandModifier | shiftModifier | optionModifier | controlModifier, us),
              "CTRL+ALT+SHIFT+LOGO+s");
    EXPECT_EQ(triggerOf(keyS, 0, us), "s");
}

TEST(ShortcutTrigger, FollowsTheLayout) {
    EXPECT_EQ(triggerOf(keyZ, controlModifier, layoutCalled("us")), "CTRL+z");
    EXPECT_EQ(triggerOf(keyZ, controlModifier, layoutCalled("de")), "CTRL+y");
}

TEST(ShortcutTrigger, KeyThatIsNoneHasNone) {
    EXPECT_EQ(triggerOf(999, controlModifier, layoutCalled("us")), "");
}

TEST(ShortcutTrigger, IdentifierCarriesTheCombination) {
    EXPECT_EQ(identifierOf("CTRL+F8"), "toggle-ctrl-f8");
    EXPECT_EQ(identifierOf("CTRL+ALT+s"), "toggle-ctrl-alt-s");
}

TEST(ShortcutTrigger, KnowsItselfInTheWordsOfDesktops) {
    for (const char* const words :
         {"CTRL+ALT+s", "Ctrl+Alt+S", "Press <Control><Alt>s", "<Primary><Alt>S", "alt ctrl s"}) {
        EXPECT_TRUE(saysTrigger(words, "CTRL+ALT+s")) << words;
    }
    EXPECT_TRUE(saysTrigger("Meta+F6", "LOGO+F6"));
    EXPECT_TRUE(saysTrigger("Press <Super>F6", "LOGO+F6"));
}

TEST(ShortcutTrigger, EverythingElseIsAnother) {
    for (const char* const words :
         {"", "Ctrl+S", "Ctrl+Alt+D", "Ctrl+Alt+Shift+S", "Ctrl+Alt+S or F9", "Strg+Alt+S", "S"}) {
        EXPECT_FALSE(saysTrigger(words, "CTRL+ALT+s")) << words;
    }
}

} // namespace
} // namespace velloran::platform::portal
