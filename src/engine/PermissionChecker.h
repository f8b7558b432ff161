#pragma once

#include <string>

namespace velloran {

/// Whether this program may post synthetic input. Where the desktop has no clicks or no permission for them, there is
/// no trust and none to be had; the first question writes the reason to the log. Static operations only, on the
/// installed platform; main thread.
class PermissionChecker {
public:
    PermissionChecker() = delete;

    /// Whether synthetic input may be posted now.
    static bool isAccessibilityTrusted();

    /// Has the system ask the user, of the program's own accord; returns the trust at the time of asking.
    static bool requestAccessibilityPrompt();

    /// Takes the user, who wants the permission, to where it is granted. Failures are silent.
    static void openAccessibilitySettings();

    /// What a refused start tells the user.
    static const std::string& permissionErrorMessage();
};

} // namespace velloran
