#pragma once

#include "async/EventLoop.h"

#include <cstdint>
#include <utility>

namespace velloran::platform {

/// Tells the first press of a key from those by which a desktop tells that it is still held. Main thread.
class HeldKey {
public:
    explicit HeldKey(EventLoop& loop) : loop_(loop) {}

    HeldKey(const HeldKey&) = delete;
    HeldKey& operator=(const HeldKey&) = delete;

    /// It was told of as pressed. Whether that is news.
    bool press() {
        // A release may go unheard: another session comes to the front, or another mode.
        forgetting_ = ScheduledCall(loop_, loop_.callAfter(longestPause, [this] { isDown_ = false; }));
        return !std::exchange(isDown_, true);
    }

    void release() { isDown_ = false; }

private:
    /// Longer than any keyboard waits before it repeats a key.
    static constexpr std::uint64_t longestPause = 3 * nanosecondsPerSecond;

    EventLoop& loop_;
    bool isDown_ = false;
    ScheduledCall forgetting_;
};

} // namespace velloran::platform
