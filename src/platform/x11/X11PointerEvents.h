#pragma once

#include "async/ConnectionLoss.h"
#include "platform/PointerEvents.h"
#include "platform/x11/ButtonMapping.h"
#include "platform/x11/XcbHandles.h"

#include <vector>

namespace velloran::platform::x11 {

/// Clicks through the XTEST extension, on a connection of its own: the engine's thread shares none with the main
/// thread. A click waits for no answer of the server, unless that has just told of another button mapping. Without a
/// server, or without the extension, everything is a no-op.
class X11PointerEvents final : public PointerEvents {
public:
    X11PointerEvents(XcbConnection connection, ConnectionLoss& loss);

    /// Whether XTEST answered when the connection was made. May be asked on any thread.
    [[nodiscard]] bool canPost() const { return canPost_; }

    /// Always nothing: a click needs no place here.
    std::optional<Point> location() override;
    std::optional<MouseEvent> makeMouseEvent(MouseEventType type, Point position, EventButton button) override;
    void post(const MouseEvent& event) override;
    void flush() override;

private:
    void followMapping();
    void noticeLoss();

    const XcbConnection connection_;
    ConnectionLoss& loss_;
    const bool canPost_;
    ButtonMapping mapping_;
    std::vector<MouseEvent> pending_;
};

} // namespace velloran::platform::x11
