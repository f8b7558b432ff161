#include "engine/ClickEngine.h"

#include "platform/Platform.h"
#include "platform/PointerEvents.h"

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

// A member, so that whoever posts holds an engine.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
void ClickEngine::post(Button button) const {
    platform::PointerEvents& events = platform::Platform::current().pointerEvents;
    const platform::Point position = events.location().value_or(platform::Point{});
    const Parameters click = parameters(button);
    for (const MouseEventType type : {click.down, click.up}) {
        if (const auto event = events.makeMouseEvent(type, position, click.button)) {
            events.post(*event);
        }
    }
    events.flush();
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
