#pragma once

#include "platform/x11/XcbHandles.h"

#include <cstdint>
#include <vector>

namespace velloran::platform::x11 {

/// What became of a grab.
enum class GrabResult {
    grabbed,
    /// Another program holds one of the states.
    taken,
    /// The server does not accept the key, or is gone.
    refused,
};

/// Grabs a key under each of the modifier states, on every screen: all of them or, where one fails, none. Waits for the
/// server. Grabbing again what this connection holds already is a success.
GrabResult grabKey(xcb_connection_t* connection, xcb_keycode_t key, const std::vector<std::uint16_t>& states);

/// Lets go of these states on every screen. Those not held do not matter.
void ungrabKey(xcb_connection_t* connection, xcb_keycode_t key, const std::vector<std::uint16_t>& states);

} // namespace velloran::platform::x11
