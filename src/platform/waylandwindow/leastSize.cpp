#include "platform/waylandwindow/leastSize.h"

#include "platform/waylandwindow/toolkitWayland.h"

#include <QWindow>

#include <xdg-shell-client-protocol.h>

namespace velloran::platform::waylandwindow {

void keepLeastSize(QWindow& window, QSize size) {
    if (xdg_toplevel* const toplevel = toplevelOf(window)) {
        xdg_toplevel_set_min_size(toplevel, size.width(), size.height());
        // It holds from the next frame on.
        window.requestUpdate();
    }
}

} // namespace velloran::platform::waylandwindow
