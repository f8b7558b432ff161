#include "platform/waylandwindow/toolkitWayland.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace velloran::platform::waylandwindow {

namespace {

/// The same names stand for other things on other window systems.
QPlatformNativeInterface* toolkit() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
               ? QGuiApplication::platformNativeInterface()
               : nullptr;
}

void* ofToolkit(const char* what) {
    auto* const resources = toolkit();
    return resources == nullptr ? nullptr : resources->nativeResourceForIntegration(what);
}

void* ofWindow(const char* what, QWindow& window) {
    auto* const resources = toolkit();
    return resources == nullptr || window.handle() == nullptr ? nullptr
                                                              : resources->nativeResourceForWindow(what, &window);
}

} // namespace

wl_display* toolkitDisplay() {
    return static_cast<wl_display*>(ofToolkit("wl_display"));
}

wl_seat* toolkitSeat() {
    return static_cast<wl_seat*>(ofToolkit("wl_seat"));
}

std::uint32_t lastInputSerial() {
    // The number itself, in the place of an address.
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(ofToolkit("serial")));
}

wl_surface* surfaceOf(QWindow& window) {
    return static_cast<wl_surface*>(ofWindow("surface", window));
}

xdg_toplevel* toplevelOf(QWindow& window) {
    return static_cast<xdg_toplevel*>(ofWindow("xdg_toplevel", window));
}

} // namespace velloran::platform::waylandwindow
