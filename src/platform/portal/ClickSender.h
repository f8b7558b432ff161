#pragma once

#include "platform/PointerEvents.h"
#include "platform/portal/PortalSession.h"

#include <memory>
#include <vector>

namespace velloran::platform::portal {

/// Sends the clicks of one session of the portal. Used on one thread at a time; may end on any.
class ClickSender {
public:
    ClickSender() = default;
    ClickSender(const ClickSender&) = delete;
    ClickSender& operator=(const ClickSender&) = delete;
    virtual ~ClickSender() = default;

    /// Whether the desktop takes clicks now. On any thread.
    [[nodiscard]] virtual bool canSend() const = 0;

    /// Whether sending waits for the desktop.
    [[nodiscard]] virtual bool waits() const = 0;

    /// Whether the desktop has not taken in everything that was sent. On any thread.
    [[nodiscard]] virtual bool isKeeping() const { return false; }

    /// Sends presses and releases in their order. A session that takes none is reported as lost, by whatever it was
    /// given for that.
    virtual void send(const std::vector<MouseEvent>& events) = 0;

    /// Nothing more is to be sent, but for what is being sent at the moment; behind that the session ends, which may be
    /// null. Main thread.
    virtual void end(std::unique_ptr<PortalSession> session) = 0;
};

/// How the kernel, and with it the portal, numbers a button.
constexpr int evdevButton(EventButton button) {
    constexpr int leftButton = 0x110;
    return leftButton + static_cast<int>(button);
}

} // namespace velloran::platform::portal
