#include "platform/gnome/RepetitionFilter.h"

#include <utility>

namespace velloran::platform::gnome {

RepetitionFilter::RepetitionFilter(EventLoop& loop, std::function<void()> pressed)
    : loop_(loop), pressed_(std::move(pressed)) {}

void RepetitionFilter::hear() {
    const Moment now = loop_.monotonicNow();
    const auto last = std::exchange(last_, now);
    const std::uint64_t pause = last ? nanosecondsBetween(*last, now) : longestDelay;
    if (std::exchange(isDoubtful_, false)) {
        decision_.cancel();
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

} // namespace velloran::platform::gnome
