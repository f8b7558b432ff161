#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace velloran::platform::x11 {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error of the X library, which is freed with this handle. Null when none came.
template<typename T>
using XcbOwned = std::unique_ptr<T, FreeMemory>;

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
