#include "engine/ClickEngine.h"

namespace velloran {

using platform::EventButton;
using platform::MouseEventType;

namespace {

struct Parameters {
    MouseEventType down;
    MouseEventType up;
    EventButton button;
};

constexpr Parameters parameters(ClickEngine::Button button) {
    switch (button) {
    case ClickEngine::Button::left:
        return {MouseEventType::leftMouseDown, MouseEventType::leftMouseUp, EventButton::left};
    case ClickEngine::Button::right:
        return {MouseEventType::rightMouseDown, MouseEventType::rightMouseUp, EventButton::right};
    case ClickEngine::Button::middle:
        break;
    }
    return {MouseEventType::otherMouseDown, MouseEventType::otherMouseUp, EventButton::center};
}

} // namespace

void ClickEngine::post(Button button) const {
    if (!events_) {
        return;
    }
    const platform::Point position = events_->location().value_or(platform::Point{});
    const Parameters click = parameters(button);
    for (const MouseEventType type : {click.down, click.up}) {
        if (const auto event = events_->makeMouseEvent(type, position, click.button)) {
            events_->post(*event);
        }
    }
    events_->flush();
}

void ClickEngine::noteHandedOver(Moment due) {
    lastDue_ = due;
    ++clicksUnderWay_;
}

bool ClickEngine::isBehind(Moment now) const {
    if (!events_) {
        return false;
    }
    const bool waitsForPost = clicksUnderWay_ > 0 && (lastDue_ < now || events_->waitsForDesktop());
    return waitsForPost || events_->isKeeping();
}

ClickEngine::Button engineButton(MouseButton button) {
    switch (button) {
    case MouseButton::left:
        return ClickEngine::Button::left;
    case MouseButton::right:
        return ClickEngine::Button::right;
    case MouseButton::middle:
        break;
    }
    return ClickEngine::Button::middle;
}

} // namespace velloran
