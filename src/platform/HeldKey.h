#pragma once

#include "async/EventLoop.h"
#include "base/Moment.h"

#include <cstdint>

namespace velloran::platform {

/// Tells the first press of a key from those by which a desktop tells that it is still held. Main thread.
///
/// Not every desktop tells of releases, and one may go unheard: another session comes to the front, or another mode.
/// A press that comes soon after another may then be either. Where releases are told, it is taken for a repetition
/// however slow the keyboard is: if it is none, its own release is heard, and the next press counts. Until one was
/// heard nothing may end that, so whoever presses the key again and again has to be believed at the latest with every
/// second press: the first repetition comes within a second on all but a few keyboards (on those a key that is held
/// may count twice, until its first release), and the others follow each other faster than fingers do.
class HeldKey {
public:
    explicit HeldKey(const EventLoop& loop) : loop_(loop) {}

    HeldKey(const HeldKey&) = delete;
    HeldKey& operator=(const HeldKey&) = delete;

    /// It was told of as pressed. Whether that is news.
    bool press() {
        const Moment now = loop_.monotonicNow();
        isRepeating_ = isDown_ && nanosecondsBetween(lastPress_, now) <= longestPause();
        isDown_ = true;
        lastPress_ = now;
        return !isRepeating_;
    }

    /// It was told of as let go.
    void release() {
        isReleaseTold_ = true;
        isDown_ = false;
    }

    /// Whatever was told does not hold any more.
    void forget() { isDown_ = false; }

private:
    static constexpr std::uint64_t millisecond = nanosecondsPerSecond / 1000;

    /// How long after a press the next one may be a repetition.
    [[nodiscard]] std::uint64_t longestPause() const {
        if (isReleaseTold_) {
            // Longer than any keyboard waits before it repeats a key.
            return 3 * nanosecondsPerSecond;
        }
        return isRepeating_ ? 200 * millisecond : nanosecondsPerSecond;
    }

    const EventLoop& loop_;
    Moment lastPress_{};
    bool isDown_ = false;
    bool isRepeating_ = false;
    bool isReleaseTold_ = false;
};

} // namespace velloran::platform
