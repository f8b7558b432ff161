#include "harness/WindowTest.h"

#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

namespace {

/// The question in the program's own window.
class HotkeyConsentTest : public WindowTest {
protected:
    void SetUp() override {
        openMainWindow();
        ASSERT_FALSE(property("isSheetOpen").toBool());
    }

    void ask(const std::string& shortcut = "Ctrl+Alt+S") {
        question = hotkeyConsent.ask(shortcut, [this](bool agreed) { answers.push_back(agreed); });
        settle();
    }

    void expectSheetIsGone() {
        EXPECT_TRUE(until([this] { return !shows("Add Shortcut"); }));
        EXPECT_FALSE(property("isSheetOpen").toBool());
    }

    std::vector<bool> answers;
    Subscription question;
};

} // namespace

TEST_F(HotkeyConsentTest, SaysWhatItIsAboutAndTakesTheUsersWord) {
    ask();
    get("Add Ctrl+Alt+S to your shortcuts?");
    EXPECT_TRUE(answers.empty());
    keepPicture("hotkey-consent");
    click(button("Add Shortcut"));
    EXPECT_EQ(answers, std::vector{true});
    expectSheetIsGone();
}

TEST_F(HotkeyConsentTest, NotNowIsAnAnswerAndSoIsEscape) {
    ask();
    click(button("Not Now"));
    EXPECT_EQ(answers, std::vector{false});
    expectSheetIsGone();
    ask();
    button("Not Now");
    tap(escapeKey);
    EXPECT_EQ(answers, (std::vector{false, false}));
    expectSheetIsGone();
}

TEST_F(HotkeyConsentTest, WorksByKeyboardAlone) {
    ask();
    button("Not Now");
    tap(tabKey);
    EXPECT_EQ(focused(), "Not Now");
    tap(tabKey);
    EXPECT_EQ(focused(), "Add Shortcut");
    tap(spaceKey);
    EXPECT_EQ(answers, std::vector{true});
    expectSheetIsGone();
}

TEST_F(HotkeyConsentTest, WhatWasAgreedToIsNotAskedForAgain) {
    ask();
    click(button("Add Shortcut"));
    expectSheetIsGone();
    ask();
    EXPECT_EQ(answers, (std::vector{true, true}));
    EXPECT_FALSE(hotkeyConsent.isAsking());
    HotkeyConsentModel ofTheNextRun(platform.preferences);
    question = ofTheNextRun.ask("Ctrl+Alt+S", [this](bool agreed) { answers.push_back(agreed); });
    EXPECT_EQ(answers.size(), 3U);
    ask("Ctrl+F8");
    EXPECT_EQ(answers.size(), 3U) << "that is another";
    get("Add Ctrl+F8 to your shortcuts?");
}

TEST_F(HotkeyConsentTest, WhatWasRefusedIsAskedForAgain) {
    ask();
    click(button("Not Now"));
    expectSheetIsGone();
    ask();
    EXPECT_TRUE(hotkeyConsent.isAsking());
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(HotkeyConsentTest, TheQuestionGoesWhenNobodyWantsToKnow) {
    ask();
    button("Not Now");
    question.cancel();
    expectSheetIsGone();
    hotkeyConsent.agree();
    EXPECT_TRUE(answers.empty());
    ask("Ctrl+F8");
    const Subscription former = std::move(question);
    ask("Ctrl+F9");
    get("Add Ctrl+F9 to your shortcuts?");
    click(button("Add Shortcut"));
    EXPECT_EQ(answers, std::vector{true}) << "one of them";
}

TEST_F(HotkeyConsentTest, WaitsForWhatIsOpen) {
    donations->isPromptVisible.set(true);
    button("Maybe later");
    ask();
    EXPECT_FALSE(shows("Add Shortcut"));
    click(get("Maybe later"));
    button("Add Shortcut");
}

} // namespace velloran::tests
