#pragma once

#include "async/ConnectionLoss.h"
#include "async/EventLoop.h"
#include "platform/sway/messages.h"

#include <functional>
#include <memory>
#include <string>

namespace velloran::platform::sway {

/// A connection to the socket on which sway takes commands. Nothing but `finish` waits. Main thread.
class SwayConnection {
public:
    /// Gets each message, in a turn of the loop; must not destroy the connection.
    using Receiver = std::function<void(const Message&)>;

    /// Nothing when nobody listens at `socket`, or whoever does has no time; then `errno` says why. `onLost` is called
    /// once, in a turn of the loop, when the connection has broken; it has to destroy this object.
    static std::unique_ptr<SwayConnection> open(EventLoop& loop, const std::string& socket, Receiver receiver,
                                                std::function<void()> onLost);

    SwayConnection(const SwayConnection&) = delete;
    SwayConnection& operator=(const SwayConnection&) = delete;
    ~SwayConnection();

    [[nodiscard]] bool isLost() const { return loss_.isLost(); }

    /// Sends in order. What the socket does not take at once follows.
    void send(const Message& message);

    /// Has everything sent done before this object ends, what the socket has not taken yet included: closing would take
    /// back what has not been read. Waits for that, a quarter of a second at most. Nothing can be sent afterwards.
    void finish();

private:
    SwayConnection(EventLoop& loop, int socket, Receiver receiver, std::function<void()> onLost);

    void write();
    bool writeSome();
    void read();

    EventLoop& loop_;
    const int socket_;
    const Receiver receiver_;
    ConnectionLoss loss_;
    MessageReader reader_;
    std::string unsent_;
    std::unique_ptr<EventLoop::Watch> reading_;
    std::unique_ptr<EventLoop::Watch> writing_;
};

} // namespace velloran::platform::sway
