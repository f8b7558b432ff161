#include "ui/window/DesktopLimits.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <optional>

namespace velloran::tests {
namespace {

using platform::HotKeyAnswer;

/// A desktop that has everything, a line for a hotkey of the user's own included.
class DesktopLimitsTest : public testing::Test {
protected:
    DesktopLimitsTest() {
        desktop.clicks.reason = "It clicks.";
        desktop.trust.reason = "Nobody asks.";
        desktop.hotKeys.reason = "It binds keys.";
        desktop.pointer.reason = "It tells.";
        desktop.hotkeyAdvice = {"~/.config/keys", "bind F6 toggle"};
    }

    [[nodiscard]] DesktopLimits with(const std::optional<HotKeyAnswer>& answer) const {
        return DesktopLimits::of(desktop, answer);
    }

    fakes::RecordingPlatform platform;
    platform::Desktop desktop = platform.desktop.get();
};

TEST_F(DesktopLimitsTest, WhereEverythingWorksItIsSaidHow) {
    const QStringList how{"It clicks.", "Nobody asks.", "It binds keys.", "It tells."};
    for (const auto& answer : {std::optional<HotKeyAnswer>(), std::optional(HotKeyAnswer())}) {
        DesktopLimits limits = with(answer);
        EXPECT_EQ(limits.sentences, how);
        limits.sentences.clear();
        EXPECT_EQ(limits, DesktopLimits()) << "and nothing else is worth a word";
    }
}

TEST_F(DesktopLimitsTest, WhatDoesNotWorkComesAfterWhy) {
    desktop.clicks = {nullptr, "Why not.", "No clicks."};
    desktop.trust = {nullptr, "It is one and the same.", "It is one and the same."};
    desktop.pointer.limit = "It does not tell now.";
    const DesktopLimits limits = with(std::nullopt);
    EXPECT_EQ(limits.sentences, (QStringList{"Why not. No clicks.", "It is one and the same.", "It binds keys.",
                                             "It tells. It does not tell now."}));
    EXPECT_EQ(limits.clicks, "No clicks.");
    EXPECT_EQ(limits.hotkey, "");
    EXPECT_EQ(limits.stillMouse, "It does not tell now.");
}

TEST_F(DesktopLimitsTest, AnotherTriggerStandsAtTheRecorderAndInAbout) {
    const DesktopLimits limits = with(HotKeyAnswer{platform::noErr, "Press <Control>F9"});
    EXPECT_EQ(limits.hotkey, "The hotkey on this desktop is: Press <Control>F9");
    EXPECT_TRUE(limits.sentences.contains("It binds keys."));
    EXPECT_TRUE(limits.sentences.contains(limits.hotkey));
    EXPECT_EQ(limits.hotkeyLine, "");
}

TEST_F(DesktopLimitsTest, WhereTheDesktopGivesNoneTheUserIsToldWhatToDo) {
    const QString advice = " For a key of your choice, put this into ~/.config/keys: bind F6 toggle";
    const QString refused = "This desktop did not give the program its hotkey.";
    const QString taken = "The hotkey is taken: it does something else on this desktop.";
    const QString keyless = "This desktop knows the hotkey, but has no key for it: choose one in its settings.";
    const QString held = "The hotkey is taken on this desktop by KWin (Show Desktop).";
    for (const auto& [answer, sentence] :
         {std::pair(HotKeyAnswer{platform::hotKeyInvalidError, {}}, refused),
          std::pair(HotKeyAnswer{platform::hotKeyExistsError, {}, false, "KWin (Show Desktop)"}, held),
          std::pair(HotKeyAnswer{platform::hotKeyExistsError, {}}, taken),
          std::pair(HotKeyAnswer{platform::noErr, {}, true}, keyless)}) {
        const DesktopLimits limits = with(answer);
        EXPECT_EQ(limits.hotkey, sentence + advice);
        EXPECT_TRUE(limits.sentences.contains(sentence));
        EXPECT_EQ(limits.hotkeyLine, "bind F6 toggle");
    }
}

TEST_F(DesktopLimitsTest, OnADesktopThatNobodyKnowsTheCommandIsTold) {
    desktop.hotKeys = {nullptr, "Nothing binds.", "No hotkey."};
    desktop.hotkeyAdvice = {"", "toggle it"};
    const DesktopLimits limits = with(std::nullopt);
    EXPECT_EQ(limits.hotkeyAdvice, "A key of the desktop's own can be bound to this command:");
    EXPECT_EQ(limits.hotkey, "No hotkey. " + limits.hotkeyAdvice + " toggle it");
}

TEST_F(DesktopLimitsTest, TheDesktopsOwnReasonForNoHotkeyIsTold) {
    HotKeyAnswer answer{platform::hotKeyInvalidError, {}};
    answer.reason = "It is away.";
    EXPECT_TRUE(with(answer).sentences.contains("It is away."));
    EXPECT_TRUE(with(answer).hotkey.startsWith("It is away. For a key"));
}

TEST_F(DesktopLimitsTest, DesktopWithoutHotkeysIsWorthMoreThanItsAnswer) {
    desktop.hotKeys = {nullptr, "Nothing binds.", "No hotkey."};
    const DesktopLimits limits = with(HotKeyAnswer{platform::hotKeyInvalidError, {}});
    EXPECT_EQ(limits.hotkey, "No hotkey. For a key of your choice, put this into ~/.config/keys: bind F6 toggle");
    EXPECT_FALSE(limits.sentences.contains("This desktop did not give the program its hotkey."));
}

} // namespace
} // namespace velloran::tests
