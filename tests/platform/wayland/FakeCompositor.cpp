#include "platform/wayland/FakeCompositor.h"

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <wlr-virtual-pointer-unstable-v1-server-protocol.h>

#include <algorithm>
#include <string_view>

namespace velloran::tests {

namespace {

template<typename Object>
Object& userData(wl_resource* resource) {
    return *static_cast<Object*>(wl_resource_get_user_data(resource));
}

void destroyed(wl_client* /*client*/, wl_resource* resource) {
    wl_resource_destroy(resource);
}

} // namespace

FakeCompositor::FakeCompositor(EventLoop& loop, std::string path)
    : loop_(loop),
      path_(std::move(path)),
      display_(wl_display_create()),
      logger_(wl_display_add_protocol_logger(
          display_,
          [](void* compositor, wl_protocol_logger_type type, const wl_protocol_logger_message* message) {
              const bool isError = wl_resource_get_class(message->resource) == std::string_view("wl_display") &&
                                   message->message->name == std::string_view("error");
              if (type == WL_PROTOCOL_LOGGER_EVENT && isError) {
                  ++static_cast<FakeCompositor*>(compositor)->errors;
              }
          },
          this)) {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 && listen(listener, 8) == 0) {
        wl_display_add_socket_fd(display_, listener);
    }
    goOn();
}

FakeCompositor::~FakeCompositor() {
    watch_.reset();
    wl_display_destroy_clients(display_);
    wl_protocol_logger_destroy(logger_);
    wl_display_destroy(display_);
    unlink(path_.c_str());
}

void FakeCompositor::offerPointers() {
    manager_ = wl_global_create(display_, &zwlr_virtual_pointer_manager_v1_interface, 1, this, bindManager);
    wl_display_flush_clients(display_);
}

void FakeCompositor::withdrawPointers() {
    wl_global_destroy(std::exchange(manager_, nullptr));
    wl_display_flush_clients(display_);
}

void FakeCompositor::addSeat(const std::string& name, bool hasPointer) {
    Seat& seat = seats_.emplace_back(Seat{name, hasPointer, nullptr});
    seat.global = wl_global_create(display_, &wl_seat_interface, 5, &seat, bindSeat);
    wl_display_flush_clients(display_);
}

void FakeCompositor::removeSeat(const std::string& name) {
    const auto seat =
        std::find_if(seats_.begin(), seats_.end(), [&](const Seat& candidate) { return candidate.name == name; });
    // Its memory stays: what clients have bound refers to it.
    wl_global_destroy(std::exchange(seat->global, nullptr));
    wl_display_flush_clients(display_);
}

void FakeCompositor::endClients() {
    wl_display_destroy_clients(display_);
}

void FakeCompositor::goOn() {
    const int requests = wl_event_loop_get_fd(wl_display_get_event_loop(display_));
    watch_ = loop_.watch(requests, EventLoop::Readiness::readable, [this] { work(); });
}

void FakeCompositor::workUntil(const std::atomic<bool>& isEnding) {
    constexpr int millisecondsATurn = 10;
    while (!isEnding) {
        wl_display_flush_clients(display_);
        wl_event_loop_dispatch(wl_display_get_event_loop(display_), millisecondsATurn);
    }
}

std::size_t FakeCompositor::bytesWaiting() const {
    wl_client* const client = wl_client_from_link(wl_display_get_client_list(display_)->next);
    int count = 0;
    ioctl(wl_client_get_fd(client), FIONREAD, &count);
    return static_cast<std::size_t>(count);
}

void FakeCompositor::work() {
    wl_event_loop_dispatch(wl_display_get_event_loop(display_), 0);
    wl_display_flush_clients(display_);
}

void FakeCompositor::bindSeat(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    const auto* const seat = static_cast<const Seat*>(data);

    static const struct wl_seat_interface requests { {}, {}, {}, destroyed };

    wl_resource* const resource = wl_resource_create(client, &wl_seat_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &requests, data, nullptr);
    wl_seat_send_capabilities(resource, seat->hasPointer ? WL_SEAT_CAPABILITY_POINTER : WL_SEAT_CAPABILITY_KEYBOARD);
}

void FakeCompositor::bindManager(wl_client* client, void* compositor, std::uint32_t version, std::uint32_t id) {
    static const struct zwlr_virtual_pointer_manager_v1_interface requests {
        makePointer, destroyed, {}
    };

    wl_resource* const resource =
        wl_resource_create(client, &zwlr_virtual_pointer_manager_v1_interface, static_cast<int>(version), id);
    wl_resource_set_implementation(resource, &requests, compositor, nullptr);
}

void FakeCompositor::makePointer(wl_client* client, wl_resource* manager, wl_resource* seat, std::uint32_t id) {
    static const struct zwlr_virtual_pointer_v1_interface requests {
        {}, {},
            [](wl_client* /*client*/, wl_resource* resource, std::uint32_t /*time*/, std::uint32_t button,
               std::uint32_t state) {
                const auto& pointer = userData<Pointer>(resource);
                pointer.compositor.deeds.push_back(
                    {Deed::Kind::button, button, state == WL_POINTER_BUTTON_STATE_PRESSED, pointer.seat});
            },
            {},
            [](wl_client* /*client*/, wl_resource* resource) {
                const auto& pointer = userData<Pointer>(resource);
                pointer.compositor.deeds.push_back({Deed::Kind::frame, 0, false, pointer.seat});
            },
            {}, {}, {}, destroyed,
    };

    auto& compositor = userData<FakeCompositor>(manager);
    wl_resource* const resource = wl_resource_create(client, &zwlr_virtual_pointer_v1_interface, 1, id);
    auto pointer = std::make_unique<Pointer>(Pointer{compositor, seat == nullptr ? "" : userData<Seat>(seat).name});
    wl_resource_set_implementation(resource, &requests, pointer.release(), [](wl_resource* dying) {
        const std::unique_ptr<Pointer> owned(&userData<Pointer>(dying));
        --owned->compositor.pointers;
    });
    ++compositor.pointers;
}

} // namespace velloran::tests
