#include "platform/wayland/VirtualPointerEvents.h"

#include <linux/input-event-codes.h>

#include <chrono>
#include <utility>

namespace velloran::platform::wayland {

namespace {

/// A button and the frame around it take 28 bytes, and compositors read 4096 at a time.
constexpr std::size_t mostEventsUnderWay = 128;

std::uint32_t buttonCode(EventButton button) {
    switch (button) {
    case EventButton::left:
        return BTN_LEFT;
    case EventButton::right:
        return BTN_RIGHT;
    case EventButton::center:
        break;
    }
    return BTN_MIDDLE;
}

/// On the clock of the compositor's other devices. It wraps around after 49 days, as theirs do.
std::uint32_t milliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace

void VirtualPointerEvents::attach(WaylandConnection& connection, WaylandOwned<zwlr_virtual_pointer_v1> pointer) {
    withdraw();
    const std::lock_guard lock(mutex_);
    connection_ = &connection;
    pointer_ = std::move(pointer);
}

void VirtualPointerEvents::withdraw() {
    const std::lock_guard lock(mutex_);
    kept_.clear();
    if (pointer_) {
        connection_->send([this] { pointer_.reset(); });
    }
}

void VirtualPointerEvents::detach() {
    withdraw();
    const std::lock_guard lock(mutex_);
    connection_ = nullptr;
    question_.reset();
    underWay_ = 0;
}

bool VirtualPointerEvents::canPost() const {
    const std::lock_guard lock(mutex_);
    return isReady();
}

bool VirtualPointerEvents::isReady() const {
    return pointer_ && !connection_->isLost();
}

std::optional<MouseEvent> VirtualPointerEvents::makeMouseEvent(MouseEventType type, Point position,
                                                               EventButton button) {
    // Whether a click can be made is settled by its press: it must not lose either half.
    if (isPress(type)) {
        isClickPossible_ = canPost();
    }
    if (!isClickPossible_) {
        return std::nullopt;
    }
    return MouseEvent{type, position, button};
}

bool VirtualPointerEvents::isKeeping() const {
    const std::lock_guard lock(mutex_);
    return !kept_.empty() || (isReady() && connection_->isKeeping());
}

void VirtualPointerEvents::post(const MouseEvent& event) {
    pending_.push_back(event);
}

void VirtualPointerEvents::flush() {
    Events events = std::exchange(pending_, {});
    const std::lock_guard lock(mutex_);
    if (events.empty() || !isReady()) {
        return;
    }
    kept_.push_back(std::move(events));
    connection_->send([this] { sendKept(); });
}

bool VirtualPointerEvents::hasRoomFor(const Events& events) const {
    return underWay_ == 0 || underWay_ + events.size() <= mostEventsUnderWay;
}

void VirtualPointerEvents::sendKept() {
    if (!connection_->isKeeping()) {
        underWay_ = 0;
    }
    while (!kept_.empty() && hasRoomFor(kept_.front())) {
        request(kept_.front());
        kept_.pop_front();
    }
    if (!question_ && !kept_.empty()) {
        ask();
    }
}

void VirtualPointerEvents::request(const Events& events) {
    for (const MouseEvent& event : events) {
        zwlr_virtual_pointer_v1_button(pointer_.get(), milliseconds(), buttonCode(event.button),
                                       isPress(event.type) ? WL_POINTER_BUTTON_STATE_PRESSED
                                                           : WL_POINTER_BUTTON_STATE_RELEASED);
        zwlr_virtual_pointer_v1_frame(pointer_.get());
    }
    underWay_ += events.size();
}

void VirtualPointerEvents::ask() {
    static constexpr wl_callback_listener listener{
        [](void* events, wl_callback* /*callback*/, std::uint32_t /*data*/) {
            static_cast<VirtualPointerEvents*>(events)->takeAnswer();
        },
    };
    question_.reset(wl_display_sync(connection_->display()));
    wl_callback_add_listener(question_.get(), &listener, this);
}

void VirtualPointerEvents::takeAnswer() {
    const std::lock_guard lock(mutex_);
    question_.reset();
    if (pointer_) {
        connection_->send([this] { sendKept(); });
    }
}

} // namespace velloran::platform::wayland
