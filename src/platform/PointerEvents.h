#pragma once

#include "platform/Point.h"

#include <cstdint>
#include <optional>

namespace velloran::platform {

/// What happens in a mouse event. Buttons other than left and right share the "other" pair.
enum class MouseEventType : std::uint32_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    otherMouseDown = 25,
    otherMouseUp = 26,
};

/// Whether a button goes down, and not up.
constexpr bool isPress(MouseEventType type) {
    return type == MouseEventType::leftMouseDown || type == MouseEventType::rightMouseDown ||
           type == MouseEventType::otherMouseDown;
}

/// The button of a mouse event, by its logical place: a left-handed mapping is already taken into account.
enum class EventButton : std::uint32_t {
    left = 0,
    right = 1,
    center = 2,
};

/// One synthetic mouse event.
struct MouseEvent {
    MouseEventType type;
    Point position;
    EventButton button;

    friend bool operator==(const MouseEvent&, const MouseEvent&) = default;
};

/// Posts synthetic mouse events to the system's input stream. Used on one thread at a time, during a run the engine
/// queue's.
class PointerEvents {
public:
    PointerEvents() = default;
    PointerEvents(const PointerEvents&) = delete;
    PointerEvents& operator=(const PointerEvents&) = delete;
    virtual ~PointerEvents() = default;

    /// Where the pointer is, in global coordinates; nothing when the system does not say, or when saying it would make
    /// clicks wait.
    virtual std::optional<Point> location() = 0;

    /// Prepares an event; nothing when it cannot be made. `position` tells where the pointer is and moves nothing.
    virtual std::optional<MouseEvent> makeMouseEvent(MouseEventType type, Point position, EventButton button) = 0;

    /// Whether sending waits for the desktop, so that clicks would pile up in front of a slow one. From any thread.
    [[nodiscard]] virtual bool waitsForDesktop() const { return false; }

    /// Whether something that was sent is kept, because the desktop does not take it in. From any thread.
    [[nodiscard]] virtual bool isKeeping() const { return false; }

    /// Puts an event in the queue of those to be sent.
    virtual void post(const MouseEvent& event) = 0;

    /// Sends all that was posted, in order and in one piece.
    virtual void flush() = 0;
};

} // namespace velloran::platform
