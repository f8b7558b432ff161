#pragma once

#include "base/Allocated.h"

#include <xcb/xcb.h>

#include <memory>

namespace velloran::platform::x11 {

struct CloseConnection {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// An open connection, broken ones included. Used on one thread at a time.
using XcbConnection = std::unique_ptr<xcb_connection_t, CloseConnection>;

/// The kind of an event, without the mark of those sent by other programs.
inline unsigned eventKind(const xcb_generic_event_t& event) {
    constexpr unsigned sentMark = 0x80;
    return event.response_type & ~sentMark;
}

} // namespace velloran::platform::x11
