// A thread that does nothing but click, at absolute deadlines, through a pointer that the compositor gives it: the
// exactest rhythm to be had from this machine and compositor. Usage: bare-wayland-thread COUNT SECONDS

#include "Schedule.h"

#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>

#include <linux/input-event-codes.h>

#include <cstdint>
#include <iostream>
#include <string_view>

namespace {

using velloran::bench::Schedule;

struct Offer {
    wl_seat* seat = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers = nullptr;
};

void take(void* data, wl_registry* registry, std::uint32_t name, const char* type, std::uint32_t /*version*/) {
    auto& offer = *static_cast<Offer*>(data);
    if (std::string_view(type) == wl_seat_interface.name) {
        offer.seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    } else if (std::string_view(type) == zwlr_virtual_pointer_manager_v1_interface.name) {
        offer.pointers = static_cast<zwlr_virtual_pointer_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
    }
}

constexpr wl_registry_listener listener{take, [](void*, wl_registry*, std::uint32_t) {}};

void click(wl_display* display, zwlr_virtual_pointer_v1* pointer) {
    for (const auto state : {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
        zwlr_virtual_pointer_v1_button(pointer, 0, BTN_LEFT, state);
        zwlr_virtual_pointer_v1_frame(pointer);
    }
    wl_display_flush(display);
}

} // namespace

int main(int argc, char** argv) {
    const auto schedule = Schedule::read(argc, argv);
    if (!schedule) {
        std::cerr << "Usage: bare-wayland-thread COUNT SECONDS\n";
        return 2;
    }
    wl_display* const display = wl_display_connect(nullptr);
    Offer offer;
    if (display != nullptr) {
        wl_registry_add_listener(wl_display_get_registry(display), &listener, &offer);
        wl_display_roundtrip(display);
    }
    if (offer.seat == nullptr || offer.pointers == nullptr) {
        std::cerr << "bare-wayland-thread: no compositor that gives programs a pointer\n";
        return 3;
    }
    zwlr_virtual_pointer_v1* const pointer =
        zwlr_virtual_pointer_manager_v1_create_virtual_pointer(offer.pointers, offer.seat);
    // It is there before anything is timed.
    wl_display_roundtrip(display);
    schedule->run([&] { click(display, pointer); });
    // What a client wrote right before it hung up may stay unread. An answer says that all has been read.
    wl_display_roundtrip(display);
    wl_display_disconnect(display);
    return 0;
}
