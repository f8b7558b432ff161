#include "platform/windowmanager/windowManagerMenu.h"

#include "base/Allocated.h"
#include "platform/windowmanager/rootWindow.h"

#include <QGuiApplication>
#include <QWindow>
#include <qguiapplication_platform.h>

#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace velloran::platform::windowmanager {

namespace {

/// Whether the window manager lists the message among those that it understands.
bool isSupported(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t message) {
    constexpr std::uint32_t mostWords = 4096;
    const auto cookie =
        xcb_get_property(connection, 0, root, atomOf(connection, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, mostWords);
    const Allocated<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    xcb_ewmh_get_atoms_reply_t supported{};
    return reply && xcb_ewmh_get_supported_from_reply(&supported, reply.get()) != 0 &&
           std::count(supported.atoms, supported.atoms + supported.atoms_len, message) > 0;
}

} // namespace

bool showWindowManagerMenu(QWindow& window) {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) {
        return false;
    }
    xcb_connection_t* const connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = rootOf(connection, id);
    const xcb_atom_t request = atomOf(connection, "_GTK_SHOW_WINDOW_MENU");
    if (!isSupported(connection, root, request)) {
        return false;
    }
    // The server's own count of pixels, which the toolkit's points may differ from.
    const auto cookie = xcb_query_pointer(connection, root);
    const Allocated<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(connection, cookie, nullptr));
    if (!pointer) {
        return false;
    }
    // The first is the pointing device, which no window manager looks at.
    const std::array data{std::uint32_t{0}, static_cast<std::uint32_t>(pointer->root_x),
                          static_cast<std::uint32_t>(pointer->root_y)};
    xcb_ewmh_send_client_message(connection, id, root, request, sizeof data, data.data());
    xcb_flush(connection);
    return true;
}

} // namespace velloran::platform::windowmanager
