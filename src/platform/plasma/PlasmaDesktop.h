#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "platform/Desktop.h"
#include "platform/bus/SessionBus.h"
#include "platform/plasma/PlasmaHotKeys.h"
#include "platform/plasma/PlasmaPointer.h"

namespace velloran::platform::plasma {

/// What Plasma does for programs over the session bus, on a connection of its own. Main thread.
class PlasmaDesktop {
public:
    /// `session` names the bus. `loop`, and what tells the `layout`, have to outlive this.
    PlasmaDesktop(EventLoop& loop, const bus::BusPlace& session, keys::CurrentLayout layout);
    PlasmaDesktop(const PlasmaDesktop&) = delete;
    PlasmaDesktop& operator=(const PlasmaDesktop&) = delete;

    /// The parts that there are now. This has to outlive whoever uses them.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

    /// The layout tells something else from now on.
    void followLayout() { hotKeys_.followLayout(); }

private:
    bus::SessionBus session_;
    PlasmaHotKeys hotKeys_;
    PlasmaPointer pointer_;
    Published<Desktop> parts_{Desktop{}};
    Subscription hotKeysPart_;
    Subscription pointerPart_;
};

} // namespace velloran::platform::plasma
