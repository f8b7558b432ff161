#pragma once

#include "async/EventLoop.h"
#include "base/Moment.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace velloran::platform::gnome {

/// Tells presses of a key from its repetitions while it is held, where the desktop tells of both alike and never of a
/// release. What would end something counts at once, whatever it is: nobody is to wait for that, and a key that is held
/// after it has begun something ends it again. What would begin something is a press where it stands alone, while
/// repetitions follow each other closely. So the first after a while counts at once; one that comes soon after another
/// is waited with until nothing follows it. A key that is let go right after its first repetition cannot be told from
/// one that was pressed twice. Main thread.
class RepetitionFilter {
public:
    /// `pressed` is called for each press, from inside `hear` or in a later turn, and may take effect some turns later.
    /// `wouldEnd` tells whether a press would end something now.
    RepetitionFilter(EventLoop& loop, std::function<bool()> wouldEnd, std::function<void()> pressed);
    RepetitionFilter(const RepetitionFilter&) = delete;
    RepetitionFilter& operator=(const RepetitionFilter&) = delete;

    /// There was a press, or a repetition.
    void hear();

    /// Longer than any keyboard waits before it repeats a key.
    static constexpr std::uint64_t longestDelay = 3 * nanosecondsPerSecond;
    /// Longer than any keyboard waits between two repetitions, with some time for a busy desktop.
    static constexpr std::uint64_t longestInterval = nanosecondsPerSecond / 5;
    /// No repetition for so long, and the key that was held is not held any more: more patient than a single doubt, as
    /// a busy desktop starts a program for each.
    static constexpr std::uint64_t endOfHolding = nanosecondsPerSecond / 2;
    /// Sooner nobody presses again who has just ended something: it has not come to an end yet.
    static constexpr std::uint64_t shortestPause = nanosecondsPerSecond / 10;

private:
    void end(Moment now, bool mayBeHeld);

    EventLoop& loop_;
    std::function<bool()> wouldEnd_;
    std::function<void()> pressed_;
    std::optional<Moment> last_;
    /// When something was ended last.
    std::optional<Moment> end_;
    bool isHeld_ = false;
    /// While the last one may be a press and may be a repetition.
    bool isDoubtful_ = false;
    ScheduledCall decision_;
};

} // namespace velloran::platform::gnome
