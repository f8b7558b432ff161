#include "platform/waylandwindow/CompositorMenu.h"

#include "platform/waylandwindow/toolkitWayland.h"

#include <QEvent>

#include <wayland-client.h>
#include <xdg-shell-client-protocol.h>

#include <chrono>
#include <utility>

namespace velloran::platform::waylandwindow {

namespace {

using namespace std::chrono_literals;

/// Many times what a compositor needs, and hardly longer than a user who waits for a menu notices.
constexpr auto longestWait = 200ms;

} // namespace

CompositorMenu::CompositorMenu() {
    patience_.setSingleShot(true);
    patience_.setInterval(longestWait);
    connect(&patience_, &QTimer::timeout, this, [this] {
        if (const auto missing = stopWaiting()) {
            missing();
        }
    });
}

void CompositorMenu::prepare() {
    serial_ = lastInputSerial();
}

bool CompositorMenu::show(QWindow& window, QPoint place, std::function<void()> missing) {
    xdg_toplevel* const toplevel = toplevelOf(window);
    wl_seat* const seat = toolkitSeat();
    if (toplevel == nullptr || seat == nullptr) {
        return false;
    }
    stopWaiting();
    window_ = &window;
    missing_ = std::move(missing);
    window.installEventFilter(this);
    patience_.start();
    xdg_toplevel_show_window_menu(toplevel, seat, serial_, place.x(), place.y());
    wl_display_flush(toolkitDisplay());
    return true;
}

bool CompositorMenu::eventFilter(QObject* watched, QEvent* event) {
    const bool passed = QObject::eventFilter(watched, event);
    if (event->type() == QEvent::Leave || event->type() == QEvent::FocusOut) {
        stopWaiting();
    }
    return passed;
}

std::function<void()> CompositorMenu::stopWaiting() {
    patience_.stop();
    if (window_) {
        window_->removeEventFilter(this);
        window_ = nullptr;
    }
    return std::exchange(missing_, nullptr);
}

} // namespace velloran::platform::waylandwindow
