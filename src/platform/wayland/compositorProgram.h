#pragma once

#include <optional>
#include <string>

namespace velloran::platform::wayland {

/// Which program the compositor of that name is, as `WaylandConnection::open` takes the name: what the system calls its
/// process, in 15 letters at most. Nothing where no compositor is there, or the system does not tell. Does not wait for
/// the compositor.
std::optional<std::string> compositorProgram(const std::string& compositor);

} // namespace velloran::platform::wayland
