#pragma once

#include "platform/bus/ScreenLock.h"
#include "platform/bus/SessionBus.h"
#include "platform/portal/Portal.h"
#include "platform/portal/PortalHotKeys.h"
#include "platform/portal/RemoteDesktop.h"
#include "platform/portal/RestoreToken.h"

#include <QString>

namespace velloran::platform::portal {

/// What the desktop's portal does for the program, on connections of its own: the portal has to be told the program's
/// name before anything else, and the toolkit's connection asks it for other things. Main thread.
class PortalDesktop {
public:
    /// `session` names the bus. Where the system knows no program of that name, it is given this one, by its path.
    /// `loop`, and what tells the `layout`, have to outlive this.
    PortalDesktop(EventLoop& loop, const bus::BusPlace& session, const QString& applicationName, const QString& program,
                  keys::CurrentLayout layout);
    PortalDesktop(const PortalDesktop&) = delete;
    PortalDesktop& operator=(const PortalDesktop&) = delete;

    /// The parts that there are now. This has to outlive whoever uses them.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

private:
    bus::SessionBus session_;
    Portal portal_;
    RestoreToken token_;
    RemoteDesktop remoteDesktop_;
    PortalHotKeys hotKeys_;
    Published<Desktop> parts_{Desktop{}};
    Subscription remoteDesktopParts_;
    Subscription hotKeysPart_;
    bus::SessionBus system_;
    bus::ScreenLock lock_;
};

} // namespace velloran::platform::portal
