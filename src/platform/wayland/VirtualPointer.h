#pragma once

#include "async/EventLoop.h"
#include "platform/InputTrust.h"
#include "platform/wayland/PointerGlobals.h"
#include "platform/wayland/VirtualPointerEvents.h"
#include "platform/wayland/WaylandConnection.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velloran::platform::wayland {

/// A pointer of the program's own at a compositor that gives one to every program (`zwlr_virtual_pointer_v1`): the
/// clicks, and the trust, as there is nobody to ask for it. Has a connection of its own. A compositor that answers
/// late, ends, or comes back is followed, as is what it offers. Main thread but for the clicks.
class VirtualPointer final : public InputTrust {
public:
    enum class Offer {
        /// The compositor has not said yet.
        unknown,
        offered,
        /// It makes no pointers for programs, or there is no compositor.
        missing,
    };

    /// Connects to the compositor of that name, as `WaylandConnection::open`, without waiting for it.
    VirtualPointer(EventLoop& loop, std::string compositor);
    ~VirtualPointer() override;

    /// What the compositor offers now. `onChanged` tells of this as well.
    [[nodiscard]] Offer offer() const;

    /// Gives the compositor that long to say. For the start of the program: nothing else here waits.
    void waitForOffer(std::chrono::milliseconds atMost);

    /// Live as long as this object, which outlives whoever posts.
    [[nodiscard]] PointerEvents& pointerEvents() { return events_; }

    bool isTrusted() override { return events_.canPost(); }

    /// Nobody is asked.
    bool requestPrompt(PromptReason /*reason*/) override { return isTrusted(); }

    void onChanged(std::function<void()> changed) override { changed_ = std::move(changed); }

    /// `missing` is called once, in a turn of the loop, when the compositor has said that it makes no pointers for
    /// programs. It may end this object.
    void onMissing(std::function<void()> missing) { missing_ = std::move(missing); }

private:
    void connect();
    void follow();
    void disconnect();
    void tell();

    EventLoop& loop_;
    const std::string compositor_;
    std::function<void()> changed_;
    std::function<void()> missing_;
    std::unique_ptr<WaylandConnection> connection_;
    std::unique_ptr<PointerGlobals> globals_;
    std::optional<PointerGlobals::SeatName> seat_;
    VirtualPointerEvents events_;
    ScheduledCall retry_;
    ScheduledCall telling_;
};

} // namespace velloran::platform::wayland
