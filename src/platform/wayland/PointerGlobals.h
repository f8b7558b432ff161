#pragma once

#include "platform/wayland/WaylandConnection.h"
#include "platform/wayland/WaylandOwned.h"

#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string_view>

namespace velloran::platform::wayland {

/// What a compositor offers for pointers of programs: the manager that makes them, and the seats that they can belong
/// to. Follows what comes and goes. Main thread.
class PointerGlobals {
public:
    /// Names a seat, for as long as the connection lives.
    using SeatName = std::uint32_t;

    /// Asks the compositor. `onChanged` is called from inside the reading of the connection, once everything that was
    /// there at the beginning is known and then after every change; it must not destroy anything of this.
    PointerGlobals(WaylandConnection& connection, std::function<void()> onChanged);
    PointerGlobals(const PointerGlobals&) = delete;
    PointerGlobals& operator=(const PointerGlobals&) = delete;
    ~PointerGlobals() = default;

    /// Whether everything that was there at the beginning is known.
    [[nodiscard]] bool isComplete() const { return answersMissing_ == 0; }

    /// Whether the compositor makes pointers for programs.
    [[nodiscard]] bool isOffered() const { return manager_ != nullptr; }

    /// The seat that a pointer should belong to: `current` for as long as it is there, else the first that has a
    /// pointer, else the first. Nothing where there is no seat.
    [[nodiscard]] std::optional<SeatName> chooseSeat(std::optional<SeatName> current) const;

    /// Makes a pointer on a seat that is there, where pointers are offered. A request: to be called while sending.
    [[nodiscard]] WaylandOwned<zwlr_virtual_pointer_v1> makePointer(SeatName seat) const;

private:
    struct Seat {
        SeatName name;
        WaylandOwned<wl_seat> seat;
        bool hasPointer = false;
    };

    void ask();
    void add(std::uint32_t name, std::string_view interface);
    void remove(std::uint32_t name);
    void tell();

    WaylandConnection& connection_;
    const std::function<void()> onChanged_;
    WaylandOwned<wl_registry> registry_;
    std::uint32_t managerName_ = 0;
    WaylandOwned<zwlr_virtual_pointer_manager_v1> manager_;
    std::list<Seat> seats_;
    /// The first answer comes after all globals, the second after what the seats then have told of themselves.
    int answersMissing_ = 2;
    WaylandOwned<wl_callback> answer_;
};

} // namespace velloran::platform::wayland
