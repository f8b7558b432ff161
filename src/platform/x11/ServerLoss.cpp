#include "platform/x11/ServerLoss.h"

#include "base/fatal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

namespace velloran::platform::x11 {

ServerLoss::ServerLoss(EventLoop& loop, std::function<void()> onLost)
    : loop_(loop), onLost_(std::move(onLost)), wakeUp_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (wakeUp_ < 0) {
        fatalError("The system grants no event descriptor");
    }
    watch_ = loop_.watch(wakeUp_, EventLoop::Readiness::readable, [this] { tell(); });
}

ServerLoss::~ServerLoss() {
    watch_.reset();
    close(wakeUp_);
}

void ServerLoss::report() {
    if (!isLost_.exchange(true, std::memory_order_acq_rel)) {
        // Cannot fail: the counter is written this once.
        eventfd_write(wakeUp_, 1);
    }
}

void ServerLoss::tell() {
    eventfd_t count = 0;
    if (eventfd_read(wakeUp_, &count) != 0) {
        return;
    }
    // Not from here: the receiver may destroy this object, and with it the watch that is calling.
    telling_ = ScheduledCall(loop_, loop_.post([onLost = std::move(onLost_)] {
        if (onLost) {
            onLost();
        }
    }));
}

} // namespace velloran::platform::x11
