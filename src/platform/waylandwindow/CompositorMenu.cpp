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
    connect(&patience_, &QTimer::timeout, this, [this] { conclude(false); });
}

void CompositorMenu::prepare() {
    serial_ = lastInputSerial();
}

bool CompositorMenu::show(QWindow& window, QPoint place, std::function<void()> missing) {
    xdg_toplevel* const toplevel = toplevelOf(window);
    wl_seat* const seat = toolkitSeat();
    if (hasMenu_ == false || toplevel == nullptr || seat == nullptr) {
        return false;
    }
    if (!hasMenu_ && !window_) {
        window_ = &window;
        missing_ = std::move(missing);
        window.installEventFilter(this);
        patience_.start();
    }
    xdg_toplevel_show_window_menu(toplevel, seat, serial_, place.x(), place.y());
    wl_display_flush(toolkitDisplay());
    return true;
}

bool CompositorMenu::eventFilter(QObject* watched, QEvent* event) {
    const bool passed = QObject::eventFilter(watched, event);
    if (event->type() == QEvent::Leave || event->type() == QEvent::FocusOut) {
        conclude(true);
    }
    return passed;
}

void CompositorMenu::conclude(bool hasMenu) {
    patience_.stop();
    hasMenu_ = hasMenu;
    if (window_) {
        window_->removeEventFilter(this);
        window_ = nullptr;
    }
    const auto missing = std::exchange(missing_, nullptr);
    if (!hasMenu && missing) {
        missing();
    }
}

} // namespace velloran::platform::waylandwindow
