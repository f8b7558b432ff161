#include "platform/wayland/PointerGlobals.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace velloran::platform::wayland {

namespace {

/// Nothing that came later is needed, of neither.
constexpr std::uint32_t seatVersion = 1;
constexpr std::uint32_t managerVersion = 1;

} // namespace

PointerGlobals::PointerGlobals(WaylandConnection& connection, std::function<void()> onChanged)
    : connection_(connection), onChanged_(std::move(onChanged)) {
    static constexpr wl_registry_listener listener{
        [](void* globals, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
           std::uint32_t /*version*/) { static_cast<PointerGlobals*>(globals)->add(name, interface); },
        [](void* globals, wl_registry* /*registry*/, std::uint32_t name) {
            static_cast<PointerGlobals*>(globals)->remove(name);
        },
    };
    connection_.send([this] {
        registry_.reset(wl_display_get_registry(connection_.display()));
        wl_registry_add_listener(registry_.get(), &listener, this);
    });
    ask();
}

std::optional<PointerGlobals::SeatName> PointerGlobals::chooseSeat(std::optional<SeatName> current) const {
    if (seats_.empty()) {
        return std::nullopt;
    }
    auto chosen = std::find_if(seats_.begin(), seats_.end(), [&](const Seat& seat) { return seat.name == current; });
    if (chosen == seats_.end()) {
        chosen = std::find_if(seats_.begin(), seats_.end(), [](const Seat& seat) { return seat.hasPointer; });
    }
    return (chosen == seats_.end() ? seats_.front() : *chosen).name;
}

WaylandOwned<zwlr_virtual_pointer_v1> PointerGlobals::makePointer(SeatName name) const {
    const auto found = std::find_if(seats_.begin(), seats_.end(), [&](const Seat& seat) { return seat.name == name; });
    return WaylandOwned<zwlr_virtual_pointer_v1>(
        zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager_.get(), found->seat.get()));
}

void PointerGlobals::ask() {
    static constexpr wl_callback_listener listener{
        [](void* data, wl_callback* /*callback*/, std::uint32_t /*data*/) {
            auto& globals = *static_cast<PointerGlobals*>(data);
            globals.answer_.reset();
            if (--globals.answersMissing_ > 0) {
                globals.ask();
            } else {
                globals.tell();
            }
        },
    };
    connection_.send([this] {
        answer_.reset(wl_display_sync(connection_.display()));
        wl_callback_add_listener(answer_.get(), &listener, this);
    });
}

void PointerGlobals::add(std::uint32_t name, std::string_view interface) {
    static constexpr wl_seat_listener seatListener{
        [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
            static_cast<Seat*>(data)->hasPointer = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
        },
        [](void* /*data*/, wl_seat* /*seat*/, const char* /*name*/) {},
    };
    if (interface == zwlr_virtual_pointer_manager_v1_interface.name && !manager_) {
        connection_.send([&] {
            managerName_ = name;
            manager_.reset(static_cast<zwlr_virtual_pointer_manager_v1*>(
                wl_registry_bind(registry_.get(), name, &zwlr_virtual_pointer_manager_v1_interface, managerVersion)));
        });
    } else if (interface == wl_seat_interface.name) {
        connection_.send([&] {
            Seat& seat = seats_.emplace_back(Seat{name, nullptr});
            seat.seat.reset(
                static_cast<wl_seat*>(wl_registry_bind(registry_.get(), name, &wl_seat_interface, seatVersion)));
            wl_seat_add_listener(seat.seat.get(), &seatListener, &seat);
        });
    } else {
        return;
    }
    tell();
}

void PointerGlobals::remove(std::uint32_t name) {
    if (manager_ && name == managerName_) {
        connection_.send([this] { manager_.reset(); });
    } else if (seats_.remove_if([name](const Seat& seat) { return seat.name == name; }) == 0) {
        return;
    }
    tell();
}

void PointerGlobals::tell() {
    if (isComplete()) {
        onChanged_();
    }
}

} // namespace velloran::platform::wayland
