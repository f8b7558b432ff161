#include "engine/PermissionChecker.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velloran {

TEST(PermissionChecker, MessageIsTheSameTextOnEveryRead) {
    EXPECT_EQ(PermissionChecker::permissionErrorMessage(),
              "Accessibility permission is required for automated clicking. Please allow Velloran in System Settings "
              "\u2192 Privacy & Security \u2192 Accessibility.");
    EXPECT_EQ(&PermissionChecker::permissionErrorMessage(), &PermissionChecker::permissionErrorMessage());
}

TEST(PermissionChecker, PassesEveryQuestionOn) {
    fakes::RecordingPlatform platform;
    for (const bool isTrusted : {true, false}) {
        platform.isTrusted = isTrusted;
        EXPECT_EQ(PermissionChecker::isAccessibilityTrusted(), isTrusted);
        EXPECT_EQ(PermissionChecker::requestAccessibilityPrompt(), isTrusted);
    }
    platform.journal.clear();
    PermissionChecker::isAccessibilityTrusted();
    PermissionChecker::requestAccessibilityPrompt();
    PermissionChecker::openAccessibilitySettings();
    EXPECT_EQ(platform.journal, (std::vector<std::string>{"ask trust", "prompt for trust", "open settings"}));
}

namespace {

/// A desktop on which input cannot be posted.
class NoPermissionTest : public testing::Test {
protected:
    void SetUp() override {
        platform.desktop.modify([](platform::Desktop& desktop) {
            desktop.clicks = {nullptr, "No way to post input here", {}};
        });
    }

    fakes::RecordingPlatform platform;
    const platform::DesktopPart<platform::PointerEvents> clicks = platform.desktop.get().clicks;
    const std::vector<std::string> reason{"log No way to post input here"};
};

} // namespace

TEST_F(NoPermissionTest, HasNoTrustAndTellsTheReasonOnce) {
    EXPECT_TRUE(platform.journal.empty());
    EXPECT_FALSE(PermissionChecker::isAccessibilityTrusted());
    EXPECT_EQ(platform.journal, reason);
    EXPECT_FALSE(PermissionChecker::requestAccessibilityPrompt());
    EXPECT_FALSE(PermissionChecker::isAccessibilityTrusted());
    PermissionChecker::openAccessibilitySettings();
    EXPECT_EQ(platform.journal, reason);
}

TEST_F(NoPermissionTest, TellsTheReasonWhenAskedToPromptFirst) {
    EXPECT_FALSE(PermissionChecker::requestAccessibilityPrompt());
    EXPECT_EQ(platform.journal, reason);
}

TEST_F(NoPermissionTest, ClicksWithoutAPermissionAreNotTrustedEither) {
    platform.desktop.modify([this](platform::Desktop& desktop) {
        desktop.clicks = clicks;
        desktop.trust = {nullptr, "Nobody to ask", {}};
    });
    EXPECT_FALSE(PermissionChecker::isAccessibilityTrusted());
    EXPECT_EQ(platform.journal, std::vector<std::string>{"log Nobody to ask"});
}

} // namespace velloran
