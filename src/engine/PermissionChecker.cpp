#include "engine/PermissionChecker.h"

#include "platform/InputTrust.h"
#include "platform/Platform.h"
#include "platform/SystemLog.h"

#include <memory>

namespace velloran {

namespace {

/// Who knows, and asks the user; null where nobody does.
std::shared_ptr<platform::InputTrust> inputTrust() {
    const platform::Platform& platform = platform::Platform::current();
    const platform::Desktop& desktop = platform.desktop.get();
    if (desktop.clicks.part && desktop.trust.part) {
        return desktop.trust.part;
    }
    platform.systemLog.writeOnce(desktop.clicks.part ? desktop.trust.reason : desktop.clicks.reason);
    return nullptr;
}

} // namespace

bool PermissionChecker::isAccessibilityTrusted() {
    const auto trust = inputTrust();
    return trust && trust->isTrusted();
}

bool PermissionChecker::requestAccessibilityPrompt() {
    const auto trust = inputTrust();
    return trust && trust->requestPrompt(platform::PromptReason::automatic);
}

void PermissionChecker::openAccessibilitySettings() {
    if (const auto trust = inputTrust()) {
        trust->requestPrompt(platform::PromptReason::askedFor);
    }
}

const std::string& PermissionChecker::permissionErrorMessage() {
    static const std::string message = "Accessibility permission is required for automated clicking. "
                                       "Please allow Velloran in System Settings → Privacy & Security → Accessibility.";
    return message;
}

} // namespace velloran
