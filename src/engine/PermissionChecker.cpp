#include "engine/PermissionChecker.h"

#include "platform/InputTrust.h"
#include "platform/Platform.h"

namespace velloran {

using platform::Platform;

bool PermissionChecker::isAccessibilityTrusted() {
    return Platform::current().inputTrust.isTrusted();
}

bool PermissionChecker::requestAccessibilityPrompt() {
    return Platform::current().inputTrust.requestPrompt(platform::PromptReason::automatic);
}

void PermissionChecker::openAccessibilitySettings() {
    Platform::current().inputTrust.requestPrompt(platform::PromptReason::askedFor);
}

const std::string& PermissionChecker::permissionErrorMessage() {
    static const std::string message = "Accessibility permission is required for automated clicking. "
                                       "Please allow Velloran in System Settings → Privacy & Security → Accessibility.";
    return message;
}

} // namespace velloran
