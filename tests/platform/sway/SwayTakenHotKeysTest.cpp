#include "keys/KeyboardLayout.h"
#include "platform/sway/SwayHotKeysTest.h"

#include <vector>

namespace velloran::tests {

/// What the user has bound is the user's.
class SwayTakenHotKeysTest : public SwayHotKeysTest {
protected:
    void SetUp() override {}
};

namespace {

const std::vector<Status> taken{hotKeyExistsError};
const std::vector<Status> granted{noErr};

} // namespace

TEST_F(SwayTakenHotKeysTest, ABoundSymbolIsTakenAndStaysTheUsers) {
    start(otherMode + "bindsym Control+F8 mode other\n");
    const Subscription hotKey = registered(f8, controlModifier);
    EXPECT_EQ(answers, taken);
    idle();
    EXPECT_TRUE(isUsers(f8, controlBit));
    EXPECT_TRUE(fired.empty());
    const Subscription other = registered(f8, optionModifier);
    EXPECT_EQ(answers, granted) << "another combination is free";
}

TEST_F(SwayTakenHotKeysTest, ABoundCodeIsTakenAndIsNotRemovedWithTheHotKey) {
    start(otherMode + "bindcode Control+74 mode other\n");
    registered(f8, controlModifier).cancel();
    EXPECT_EQ(answers, taken);
    hotKeys.reset();
    EXPECT_TRUE(isUsers(f8, controlBit));
}

TEST_F(SwayTakenHotKeysTest, WhatIncludedFilesBindIsTaken) {
    start("set $mod Control\nset $folder parts\ninclude $folder/*.conf\n",
          {{"parts/keys.conf", "bindsym $mod+F8 nop user\ninclude ../deep\n"},
           {"deep", "bindsym $mod+Shift+s nop user\n"}});
    const Subscription first = registered(f8, controlModifier);
    EXPECT_EQ(answers, taken);
    const Subscription second = registered(letterS, controlModifier | shiftModifier);
    EXPECT_EQ(answers, taken);
    const Subscription third = registered(f9, controlModifier);
    EXPECT_EQ(answers, granted);
}

TEST_F(SwayTakenHotKeysTest, WhatAModeBindsIsFreeAndTheHotKeyBelongsToNone) {
    start("mode other {\n  bindsym Control+F8 mode default\n}\n");
    ASSERT_TRUE(ownSway->command("mode other"));
    const Subscription hotKey = registered(f8, controlModifier);
    EXPECT_EQ(answers, granted);
    witness->tap(f8.code, controlBit);
    idle();
    EXPECT_TRUE(fired.empty()) << "the mode's own goes first";
    witness->tap(f8.code, controlBit);
    EXPECT_TRUE(untilFired(1)) << "registered in a mode, it still belongs to none";
}

TEST_F(SwayTakenHotKeysTest, SymbolsAreThoseOfTheUsersLayout) {
    start("bindsym Control+z nop user\n");
    const auto german = keys::KeyboardLayout::fromNames({"evdev", "pc105", "de", "", ""});
    ASSERT_TRUE(german.ok());
    constexpr Key leftOfX{6, 44};
    constexpr Key rightOfT{16, 21};
    const Subscription american = registered(leftOfX, controlModifier);
    EXPECT_EQ(answers, taken);
    layout = [&german] { return &german.value(); };
    connect(ownSway->commandSocket());
    const Subscription first = registered(leftOfX, controlModifier);
    EXPECT_EQ(answers, granted);
    const Subscription second = registered(rightOfT, controlModifier);
    EXPECT_EQ(answers, taken);
}

TEST_F(SwayTakenHotKeysTest, AReloadTakesAndGivesBack) {
    start("");
    const Subscription hotKey = registered(f8, controlModifier);
    ownSway->configure("bindsym Control+F8 mode other\n" + otherMode);
    ASSERT_TRUE(ownSway->command("reload"));
    ASSERT_TRUE(until([this] { return answers.size() == 2; }));
    EXPECT_EQ(answers.back(), hotKeyExistsError);
    EXPECT_TRUE(isUsers(f8, controlBit));
    ownSway->configure("");
    ASSERT_TRUE(ownSway->command("reload"));
    ASSERT_TRUE(until([this] { return answers.size() == 3; }));
    EXPECT_EQ(answers.back(), noErr);
    witness->tap(f8.code, controlBit);
    EXPECT_TRUE(untilFired(1));
}

} // namespace velloran::tests
