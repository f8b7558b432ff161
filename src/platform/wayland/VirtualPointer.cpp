#include "platform/wayland/VirtualPointer.h"

#include <utility>

namespace velloran::platform::wayland {

namespace {

/// How long a compositor that has gone is left alone.
constexpr std::uint64_t retryInterval = nanosecondsPerSecond;

} // namespace

VirtualPointer::VirtualPointer(EventLoop& loop, std::string compositor)
    : loop_(loop), compositor_(std::move(compositor)) {
    connect();
}

VirtualPointer::~VirtualPointer() {
    disconnect();
}

VirtualPointer::Offer VirtualPointer::offer() const {
    if (globals_ && !globals_->isComplete()) {
        return Offer::unknown;
    }
    return events_.canPost() ? Offer::offered : Offer::missing;
}

void VirtualPointer::waitForOffer(std::chrono::milliseconds atMost) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + atMost;
    while (offer() == Offer::unknown && !connection_->isLost() && Clock::now() < end) {
        connection_->waitAndRead(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
    }
}

void VirtualPointer::connect() {
    connection_ = WaylandConnection::open(loop_, compositor_, [this] {
        disconnect();
        retry_ = ScheduledCall(loop_, loop_.callAfter(retryInterval, [this] { connect(); }));
        tell();
    });
    if (!connection_) {
        retry_ = ScheduledCall(loop_, loop_.callAfter(retryInterval, [this] { connect(); }));
        return;
    }
    globals_ = std::make_unique<PointerGlobals>(*connection_, [this] { follow(); });
}

void VirtualPointer::follow() {
    const auto seat = globals_->isOffered() ? globals_->chooseSeat(seat_) : std::nullopt;
    if (seat != std::exchange(seat_, seat)) {
        if (seat) {
            WaylandOwned<zwlr_virtual_pointer_v1> pointer;
            connection_->send([&] { pointer = globals_->makePointer(*seat); });
            events_.attach(*connection_, std::move(pointer));
        } else {
            events_.withdraw();
        }
    }
    tell();
}

void VirtualPointer::disconnect() {
    events_.detach();
    seat_.reset();
    globals_.reset();
    connection_.reset();
}

void VirtualPointer::tell() {
    telling_ = ScheduledCall(loop_, loop_.post([this] {
        // Each receiver may put another one into its place, and the last one may end this.
        if (const std::function<void()> changed = changed_) {
            changed();
        }
        if (missing_ && globals_ && globals_->isComplete() && !globals_->isOffered()) {
            const std::function<void()> missing = std::exchange(missing_, nullptr);
            missing();
        }
    }));
}

} // namespace velloran::platform::wayland
