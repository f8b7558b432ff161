#include "platform/x11/MainConnection.h"

#include <utility>

namespace velloran::platform::x11 {

MainConnection::MainConnection(XcbConnection connection, EventLoop& loop, ConnectionLoss& loss)
    : connection_(std::move(connection)),
      loop_(loop),
      loss_(loss),
      watch_(loop.watch(xcb_get_file_descriptor(connection_.get()), EventLoop::Readiness::readable,
                        [this] { onReadable(); })) {}

void MainConnection::settle() {
    xcb_flush(get());
    collect();
    noticeLoss();
    if (!events_.empty() && !isHandingOnRequested_) {
        isHandingOnRequested_ = true;
        handingOn_ = ScheduledCall(loop_, loop_.post([this] {
            isHandingOnRequested_ = false;
            handOn();
        }));
    }
}

void MainConnection::onReadable() {
    collect();
    handOn();
    // What the receiver asked for may have brought further events.
    settle();
}

void MainConnection::collect() {
    while (Allocated<xcb_generic_event_t> event{xcb_poll_for_event(get())}) {
        events_.push_back(std::move(event));
    }
}

void MainConnection::handOn() {
    while (!events_.empty()) {
        const Allocated<xcb_generic_event_t> event = std::move(events_.front());
        events_.pop_front();
        if (receiver_) {
            receiver_(*event);
        }
    }
}

void MainConnection::noticeLoss() {
    if (watch_ == nullptr || xcb_connection_has_error(get()) == 0) {
        return;
    }
    loss_.report();
    // The descriptor of a broken connection can be read for ever.
    watch_.reset();
}

} // namespace velloran::platform::x11
