#include "platform/gnome/RepetitionFilter.h"

#include <utility>

namespace velloran::platform::gnome {

RepetitionFilter::RepetitionFilter(EventLoop& loop, std::function<bool()> wouldEnd, std::function<void()> pressed)
    : loop_(loop), wouldEnd_(std::move(wouldEnd)), pressed_(std::move(pressed)) {}

void RepetitionFilter::hear() {
    const Moment now = loop_.monotonicNow();
    const auto last = std::exchange(last_, now);
    const std::uint64_t pause = last ? nanosecondsBetween(*last, now) : longestDelay;
    const bool wasDoubtful = std::exchange(isDoubtful_, false);
    decision_.cancel();
    if (wouldEnd_()) {
        end(now, pause < longestDelay);
        return;
    }
    if (wasDoubtful) {
        isHeld_ = true;
        return;
    }
    isHeld_ = isHeld_ && pause < endOfHolding;
    if (isHeld_) {
        return;
    }
    if (pause >= longestDelay) {
        pressed_();
        return;
    }
    isDoubtful_ = true;
    decision_ = ScheduledCall(loop_, loop_.callAfter(longestInterval, [this] {
        isDoubtful_ = false;
        pressed_();
    }));
}

/// What follows may be repetitions, and is not to begin anything.
void RepetitionFilter::end(Moment now, bool mayBeHeld) {
    isHeld_ = mayBeHeld;
    if (!end_ || nanosecondsBetween(*end_, now) >= shortestPause) {
        end_ = now;
        pressed_();
    }
}

} // namespace velloran::platform::gnome
