#include "platform/windowmanager/windowManagerMenu.h"

#include "platform/windowmanager/XcbReply.h"
#include "platform/windowmanager/rootWindow.h"

#include <QGuiApplication>
#include <QWindow>
#include <qguiapplication_platform.h>

#include <algorithm>
#include <cstdint>
#include <span>

namespace velloran::platform::windowmanager {

namespace {

/// Whether the window manager lists the message among those that it understands.
bool isSupported(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t message) {
    constexpr std::uint32_t mostWords = 4096;
    const auto cookie =
        xcb_get_property(connection, 0, root, atomOf(connection, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, mostWords);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32) {
        return false;
    }
    const std::span supported(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) /
                                  sizeof(xcb_atom_t));
    return std::find(supported.begin(), supported.end(), message) != supported.end();
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
    const XcbReply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(connection, cookie, nullptr));
    if (!pointer) {
        return false;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = request;
    // The first is the pointing device, which no window manager looks at.
    message.data.data32[1] = static_cast<std::uint32_t>(pointer->root_x);
    message.data.data32[2] = static_cast<std::uint32_t>(pointer->root_y);
    tellWindowManager(connection, root, message);
    xcb_flush(connection);
    return true;
}

} // namespace velloran::platform::windowmanager
