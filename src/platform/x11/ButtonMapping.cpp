#include "platform/x11/ButtonMapping.h"

namespace velloran::platform::x11 {

namespace {

std::uint8_t roleOf(EventButton button) {
    switch (button) {
    case EventButton::left:
        return 1;
    case EventButton::center:
        return 2;
    case EventButton::right:
        return 3;
    }
    return 0;
}

} // namespace

ButtonMapping ButtonMapping::read(xcb_connection_t* connection) {
    const Allocated<xcb_get_pointer_mapping_reply_t> reply(
        xcb_get_pointer_mapping_reply(connection, xcb_get_pointer_mapping(connection), nullptr));
    if (!reply) {
        return ButtonMapping({});
    }
    const std::uint8_t* const first = xcb_get_pointer_mapping_map(reply.get());
    return ButtonMapping({first, first + xcb_get_pointer_mapping_map_length(reply.get())});
}

std::optional<std::uint8_t> ButtonMapping::physicalButton(EventButton button) const {
    const std::uint8_t role = roleOf(button);
    std::uint8_t physical = 0;
    for (const std::uint8_t played : roles_) {
        ++physical;
        if (played == role) {
            return physical;
        }
    }
    return std::nullopt;
}

} // namespace velloran::platform::x11
