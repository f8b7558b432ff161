#pragma once

#include <optional>
#include <string>

namespace velloran::platform::hyprland {

/// Where the Hyprland whose folder that is takes requests. Nothing where it is not the compositor of that name: its
/// name stays in the environment of one that is started in it, which has another pointer.
std::optional<std::string> requestSocket(const std::string& folder, const std::string& compositor);

} // namespace velloran::platform::hyprland
