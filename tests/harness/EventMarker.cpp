#include "harness/EventMarker.h"

#include <QCoreApplication>
#include <QTest>

#include <string_view>

namespace velloran::tests {

EventMarker::EventMarker(const observer::Server& other) : other_(other) {
    constexpr std::string_view name = "VELLORAN_TEST_MARKER";
    const auto request = xcb_intern_atom(other.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const observer::Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(other.get(), request, nullptr));
    if (reply) {
        type_ = reply->atom;
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
}

EventMarker::~EventMarker() {
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool EventMarker::pass(QWindow& window) {
    xcb_client_message_event_t marker{};
    marker.response_type = XCB_CLIENT_MESSAGE;
    marker.format = 32;
    marker.window = static_cast<xcb_window_t>(window.winId());
    marker.type = type_;
    marker.data.data32[0] = ++sent_;
    xcb_send_event(other_.get(), 0, marker.window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&marker));
    other_.synchronize();
    const bool hasArrived = QTest::qWaitFor([this] { return seen_ == sent_; }, 10000);
    // What the events have led to inside the program.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    return hasArrived;
}

bool EventMarker::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto* marker = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (marker->type != type_) {
        return false;
    }
    seen_ = marker->data.data32[0];
    return true;
}

} // namespace velloran::tests
