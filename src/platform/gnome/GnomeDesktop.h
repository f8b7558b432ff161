#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "platform/Desktop.h"
#include "platform/HotkeyConsent.h"
#include "platform/bus/SessionBus.h"
#include "platform/gnome/GnomeHotKeys.h"

#include <functional>

namespace velloran::platform::gnome {

/// What GNOME does for programs beside its portal, on a connection to the session bus of its own. Main thread.
class GnomeDesktop {
public:
    /// `session` names the bus; `wouldEnd` tells whether a press of the hotkey would end something now. `loop`,
    /// `consent`, and what these and the `layout` ask, have to outlive this.
    GnomeDesktop(EventLoop& loop, const bus::BusPlace& session, HotkeyConsent& consent, keys::CurrentLayout layout,
                 std::function<bool()> wouldEnd);
    GnomeDesktop(const GnomeDesktop&) = delete;
    GnomeDesktop& operator=(const GnomeDesktop&) = delete;

    /// The parts that there are now. This has to outlive whoever uses them.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

private:
    bus::SessionBus session_;
    GnomeHotKeys hotKeys_;
    Published<Desktop> parts_{Desktop{}};
    Subscription hotKeysPart_;
};

} // namespace velloran::platform::gnome
