#include "async/ConnectionLoss.h"

#include <utility>

namespace velloran {

ConnectionLoss::ConnectionLoss(EventLoop& loop, std::function<void()> onLost)
    : loop_(loop), onLost_(std::make_shared<const std::function<void()>>(std::move(onLost))) {}

void ConnectionLoss::report() {
    if (isLost_.exchange(true, std::memory_order_acq_rel)) {
        return;
    }
    loop_.postFromAnyThread([told = std::weak_ptr(onLost_)] {
        if (const auto onLost = told.lock(); onLost && *onLost) {
            (*onLost)();
        }
    });
}

} // namespace velloran
