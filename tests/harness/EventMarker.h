#pragma once

#include "harness/observer/Server.h"

#include <QAbstractNativeEventFilter>
#include <QWindow>

namespace velloran::tests {

/// Tells when the toolkit has taken in everything that happened on the screen so far: events come in order, so what was
/// sent before a marker is there before it.
class EventMarker final : public QAbstractNativeEventFilter {
public:
    explicit EventMarker(const observer::Server& other);
    EventMarker(const EventMarker&) = delete;
    EventMarker& operator=(const EventMarker&) = delete;
    ~EventMarker() override;

    /// Sends a marker to the window and runs the program until it has arrived. False when it does not within ten
    /// seconds.
    bool pass(QWindow& window);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    const observer::Server& other_;
    xcb_atom_t type_ = XCB_ATOM_NONE;
    std::uint32_t sent_ = 0;
    std::uint32_t seen_ = 0;
};

} // namespace velloran::tests
