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

} // namespace velloran
