#include "platform/x11/keyGrabs.h"

namespace velloran::platform::x11 {

namespace {

constexpr std::uint8_t badAccess = 10;
constexpr std::uint8_t eventsToUs = 0;

std::vector<xcb_window_t> rootWindows(xcb_connection_t* connection) {
    std::vector<xcb_window_t> roots;
    if (xcb_connection_has_error(connection) != 0) {
        return roots;
    }
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection)); screen.rem > 0; xcb_screen_next(&screen)) {
        roots.push_back(screen.data->root);
    }
    return roots;
}

} // namespace

GrabResult grabKey(xcb_connection_t* connection, xcb_keycode_t key, const std::vector<std::uint16_t>& states) {
    const std::vector<xcb_window_t> roots = rootWindows(connection);
    std::vector<xcb_void_cookie_t> requests;
    for (const xcb_window_t root : roots) {
        for (const std::uint16_t state : states) {
            requests.push_back(xcb_grab_key_checked(connection, eventsToUs, root, state, key, XCB_GRAB_MODE_ASYNC,
                                                    XCB_GRAB_MODE_ASYNC));
        }
    }
    GrabResult result = requests.empty() ? GrabResult::refused : GrabResult::grabbed;
    for (const xcb_void_cookie_t request : requests) {
        if (const Allocated<xcb_generic_error_t> error{xcb_request_check(connection, request)}) {
            result = error->error_code == badAccess ? GrabResult::taken : GrabResult::refused;
        }
    }
    // On a broken connection no error is told for a request.
    if (xcb_connection_has_error(connection) != 0) {
        return GrabResult::refused;
    }
    if (result != GrabResult::grabbed) {
        ungrabKey(connection, key, states);
    }
    return result;
}

void ungrabKey(xcb_connection_t* connection, xcb_keycode_t key, const std::vector<std::uint16_t>& states) {
    for (const xcb_window_t root : rootWindows(connection)) {
        for (const std::uint16_t state : states) {
            xcb_ungrab_key(connection, key, root, state);
        }
    }
    xcb_flush(connection);
}

} // namespace velloran::platform::x11
