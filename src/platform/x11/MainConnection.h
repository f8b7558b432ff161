#pragma once

#include "async/ConnectionLoss.h"
#include "async/EventLoop.h"
#include "platform/x11/XcbHandles.h"

#include <deque>
#include <functional>
#include <memory>

namespace velloran::platform::x11 {

/// The connection of the main thread: everything but the clicks. Events are handed on in turns of the loop, never from
/// inside a request. A broken connection is reported once, and then nothing happens any more: requests fail at once.
class MainConnection {
public:
    using EventReceiver = std::function<void(const xcb_generic_event_t&)>;

    MainConnection(XcbConnection connection, EventLoop& loop, ConnectionLoss& loss);
    MainConnection(const MainConnection&) = delete;
    MainConnection& operator=(const MainConnection&) = delete;
    ~MainConnection() = default;

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }

    [[nodiscard]] EventLoop& loop() const { return loop_; }

    /// Who gets the events; an empty function ends that.
    void setReceiver(EventReceiver receiver) { receiver_ = std::move(receiver); }

    /// To be called after requests. The library reads events along with the replies it waits for, and then the loop
    /// would not see them arrive: this has them handed on in the loop's next turn. Also sends what is still unsent, and
    /// notices a broken connection.
    void settle();

private:
    void onReadable();
    void collect();
    void handOn();
    void noticeLoss();

    XcbConnection connection_;
    EventLoop& loop_;
    ConnectionLoss& loss_;
    EventReceiver receiver_;
    std::deque<Allocated<xcb_generic_event_t>> events_;
    std::unique_ptr<EventLoop::Watch> watch_;
    bool isHandingOnRequested_ = false;
    ScheduledCall handingOn_;
};

} // namespace velloran::platform::x11
