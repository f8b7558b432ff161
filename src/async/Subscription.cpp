#include "async/Subscription.h"

#include <utility>

namespace velloran {

Subscription::Subscription(std::function<void()> detach) : detach_(std::move(detach)) {}

Subscription::Subscription(Subscription&& other) noexcept : detach_(std::exchange(other.detach_, nullptr)) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        cancel();
        detach_ = std::exchange(other.detach_, nullptr);
    }
    return *this;
}

Subscription::~Subscription() {
    cancel();
}

void Subscription::cancel() {
    if (const auto detach = std::exchange(detach_, nullptr)) {
        detach();
    }
}

} // namespace velloran
