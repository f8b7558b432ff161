#pragma once

#include "platform/PointerEvents.h"
#include "platform/wayland/WaylandConnection.h"
#include "platform/wayland/WaylandOwned.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <vector>

namespace velloran::platform::wayland {

/// Clicks through a pointer of the program's own at the compositor. What is flushed together leaves in one write, and
/// no call waits. What the compositor has yet to read counts as kept, so that whoever heeds `isKeeping` never has more
/// than one click under way: it is all that a compositor that stands still can make up for after a stop.
///
/// A compositor reads a connection in pieces and may see the end of one before its last pieces. So that whoever is
/// killed has clicked wholly or not at all, there is never more under way than fits into one piece; clicks beyond that
/// wait here until all that was sent has been read.
///
/// The interface belongs to one thread at a time, `attach` and the like to the main thread, `canPost` to any.
class VirtualPointerEvents final : public PointerEvents {
public:
    VirtualPointerEvents() = default;

    /// From now on clicks go to that pointer, which replaces an earlier one. The connection has to stay until `detach`.
    void attach(WaylandConnection& connection, WaylandOwned<zwlr_virtual_pointer_v1> pointer);

    /// There is no pointer any more. Clicks that have been kept are dropped.
    void withdraw();

    /// The same, and the connection is let go of.
    void detach();

    /// Whether there is a pointer at a compositor that is there.
    [[nodiscard]] bool canPost() const;

    /// Always nothing: the protocol tells of no place, and a click needs none.
    std::optional<Point> location() override { return std::nullopt; }

    std::optional<MouseEvent> makeMouseEvent(MouseEventType type, Point position, EventButton button) override;
    [[nodiscard]] bool isKeeping() const override;
    void post(const MouseEvent& event) override;
    void flush() override;

private:
    using Events = std::vector<MouseEvent>;

    [[nodiscard]] bool isReady() const;
    [[nodiscard]] bool hasRoomFor(const Events& events) const;
    void sendKept();
    void request(const Events& events);
    void ask();
    void takeAnswer();

    /// What is posted and not yet flushed, and whether the click that began it can be made. The poster's thread only.
    Events pending_;
    bool isClickPossible_ = false;

    mutable std::mutex mutex_;
    WaylandConnection* connection_ = nullptr;
    WaylandOwned<zwlr_virtual_pointer_v1> pointer_;
    /// Flushed, but not sent; whenever there is something, a question is open.
    std::deque<Events> kept_;
    /// Open until the compositor has read everything up to it.
    WaylandOwned<wl_callback> question_;
    /// How many events were sent since the compositor was last known to have read everything.
    std::size_t underWay_ = 0;
};

} // namespace velloran::platform::wayland
