#include "platform/x11/X11PointerEvents.h"

#include <xcb/xtest.h>

#include <utility>

namespace velloran::platform::x11 {

namespace {

bool isPointerMappingChange(const xcb_generic_event_t& event) {
    return eventKind(event) == XCB_MAPPING_NOTIFY &&
           reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request == XCB_MAPPING_POINTER;
}

bool answersXTest(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection, &xcb_test_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const Allocated<xcb_test_get_version_reply_t> version(xcb_test_get_version_reply(
        connection, xcb_test_get_version(connection, XCB_TEST_MAJOR_VERSION, XCB_TEST_MINOR_VERSION), nullptr));
    return version != nullptr;
}

} // namespace

X11PointerEvents::X11PointerEvents(XcbConnection connection, ConnectionLoss& loss)
    : connection_(std::move(connection)),
      loss_(loss),
      canPost_(answersXTest(connection_.get())),
      mapping_(ButtonMapping::read(connection_.get())) {}

std::optional<Point> X11PointerEvents::location() {
    // The events happen where the pointer is by themselves. Asking where that is would have every click wait for the
    // server, and clicks that wait would still come long after the end of a run.
    return std::nullopt;
}

std::optional<MouseEvent> X11PointerEvents::makeMouseEvent(MouseEventType type, Point position, EventButton button) {
    // A click has one mapping: the one of its press.
    if (isPress(type)) {
        followMapping();
    }
    if (!canPost_ || loss_.isLost() || !mapping_.physicalButton(button)) {
        return std::nullopt;
    }
    return MouseEvent{type, position, button};
}

void X11PointerEvents::post(const MouseEvent& event) {
    pending_.push_back(event);
}

void X11PointerEvents::flush() {
    const std::vector<MouseEvent> events = std::exchange(pending_, {});
    if (events.empty() || !canPost_ || loss_.isLost()) {
        return;
    }
    // The library writes its buffer out when it is full, wherever that cuts. It starts empty here, so that a click
    // leaves in one write: whoever is killed at any moment has sent both halves of it or none. Press and release also
    // name the same physical button, because the mapping is not read again in between.
    xcb_flush(connection_.get());
    for (const MouseEvent& event : events) {
        if (const auto button = mapping_.physicalButton(event.button)) {
            const std::uint8_t kind = isPress(event.type) ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE;
            xcb_test_fake_input(connection_.get(), kind, *button, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        }
    }
    xcb_flush(connection_.get());
    noticeLoss();
}

void X11PointerEvents::followMapping() {
    // Polling reads what has arrived, and waits for nothing. The server tells of every change unasked; whatever it had
    // told before the click began counts for the click.
    bool hasChanged = false;
    while (const Allocated<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        hasChanged = hasChanged || isPointerMappingChange(*event);
    }
    if (hasChanged) {
        mapping_ = ButtonMapping::read(connection_.get());
    }
    noticeLoss();
}

void X11PointerEvents::noticeLoss() {
    if (xcb_connection_has_error(connection_.get()) != 0) {
        loss_.report();
    }
}

} // namespace velloran::platform::x11
