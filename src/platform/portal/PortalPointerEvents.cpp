#include "platform/portal/PortalPointerEvents.h"

#include <utility>

namespace velloran::platform::portal {

namespace {

bool isWholeClick(const std::vector<MouseEvent>& events) {
    return events.size() == 2 && isPress(events.front().type) && !isPress(events.back().type);
}

} // namespace

void PortalPointerEvents::use(std::shared_ptr<ClickSender> sender) {
    {
        const std::lock_guard lock(mutex_);
        sender_.swap(sender);
    } // what was used before is let go of outside the lock
}

bool PortalPointerEvents::canPost() const {
    const auto used = sender();
    return used && used->canSend();
}

std::optional<MouseEvent> PortalPointerEvents::makeMouseEvent(MouseEventType type, Point position, EventButton button) {
    // Whether a click can be made is settled by its press: it must not lose either half.
    if (isPress(type)) {
        isClickPossible_ = canPost();
    }
    return isClickPossible_ ? std::optional(MouseEvent{type, position, button}) : std::nullopt;
}

bool PortalPointerEvents::waitsForDesktop() const {
    const auto used = sender();
    return used && used->waits();
}

bool PortalPointerEvents::isKeeping() const {
    const auto used = sender();
    return used && used->isKeeping();
}

void PortalPointerEvents::post(const MouseEvent& event) {
    pending_.push_back(event);
}

void PortalPointerEvents::flush() {
    const std::vector<MouseEvent> events = std::exchange(pending_, {});
    isClickPossible_ = false;
    const auto used = sender();
    if (used && isWholeClick(events)) {
        used->send(events);
    }
}

std::shared_ptr<ClickSender> PortalPointerEvents::sender() const {
    const std::lock_guard lock(mutex_);
    return sender_;
}

} // namespace velloran::platform::portal
