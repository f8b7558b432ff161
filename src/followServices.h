#pragma once

#include "async/Published.h"
#include "async/Subscription.h"
#include "chooseDesktop.h"
#include "platform/Desktop.h"

namespace velloran {

/// Gives a Wayland session what services on its session bus have of what nothing else does there, or nothing else any
/// more, as they come and go, for as long as the result exists: hot keys and the pointer's place from Plasma, else hot
/// keys from the desktop's portal, and clicks with their permission; the pointer's place from Hyprland. A service is
/// asked only when those before it do not do it. Hot keys that the compositor itself binds come before all others,
/// those that were chosen at the start included; those among the user's own shortcuts of GNOME come last, and not where
/// another has had some in this run, which may be back. Their parts must not be used after that.
Subscription followServices(const Environment& environment, const Backends& backends,
                            Published<platform::Desktop>& desktop);

} // namespace velloran
