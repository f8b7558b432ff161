#include "platform/windowmanager/buttonEvents.h"

#include <QGuiApplication>
#include <qguiapplication_platform.h>

// The header has a member with a name that C++ keeps to itself.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace velloran::platform::windowmanager {

void leaveOutButtonsOfOthers() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) {
        return;
    }
    xcb_connection_t* const connection = x11->connection();
    const auto* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_POINTER_BUTTONS;
    details.stateDetails = 0;
    xcb_xkb_select_events_aux(connection, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0,
                              &details);
    xcb_flush(connection);
}

} // namespace velloran::platform::windowmanager
