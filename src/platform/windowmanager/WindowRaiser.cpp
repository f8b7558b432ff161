#include "platform/windowmanager/WindowRaiser.h"

#include "platform/windowmanager/rootWindow.h"

#include <QGuiApplication>
#include <QWindow>
#include <qguiapplication_platform.h>

#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace velloran::platform::windowmanager {

namespace {

/// Asks the window manager for the focus. With the time of the user's action it can judge by itself; without, the user
/// has just started the program by other means, which makes it the user's own wish.
void requestFocus(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window,
                  const bus::ActivationToken& token) {
    constexpr std::uint32_t fromApplication = 1;
    constexpr std::uint32_t fromUser = 2;
    const auto time = token.serverTime();
    const std::array data{time ? fromApplication : fromUser, time.value_or(XCB_CURRENT_TIME)};
    xcb_ewmh_send_client_message(connection, window, root, atomOf(connection, "_NET_ACTIVE_WINDOW"), sizeof data,
                                 data.data());
}

/// Start-up notifications are texts that are sent to everybody, twenty bytes at a time.
void endStartup(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window, const QByteArray& startupId) {
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"';
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = window;
    message.type = atomOf(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t continuation = atomOf(connection, "_NET_STARTUP_INFO");
    constexpr qsizetype pieceSize = sizeof message.data.data8;
    // The closing zero belongs to the text.
    for (qsizetype sent = 0; sent <= text.size(); sent += pieceSize) {
        std::memset(message.data.data8, 0, pieceSize);
        std::memcpy(message.data.data8, text.constData() + sent,
                    static_cast<std::size_t>(std::min(pieceSize, text.size() - sent)));
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char*>(&message));
        message.type = continuation;
    }
}

} // namespace

void raiseWindow(QWindow& window, const bus::ActivationToken& token) {
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) {
        if (!token.wayland.isEmpty()) {
            // Where the toolkit looks for it, once.
            qputenv("XDG_ACTIVATION_TOKEN", token.wayland);
        }
        window.requestActivate();
        // Where the compositor takes none, the toolkit leaves it there, and it is nothing for programs started from
        // here.
        qunsetenv("XDG_ACTIVATION_TOKEN");
        return;
    }
    xcb_connection_t* const connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.winId());
    const xcb_window_t root = rootOf(connection, id);
    requestFocus(connection, root, id, token);
    if (!token.startupId.isEmpty()) {
        endStartup(connection, root, id, token.startupId);
    }
    xcb_flush(connection);
}

} // namespace velloran::platform::windowmanager
