#pragma once

#include <cstdint>
#include <optional>

namespace velloran::platform::pulse {

/// Decides where in a running stream each tick goes. Places are frame numbers in the stream; moments are nanoseconds on
/// the monotonic clock.
///
/// A tick is heard a fixed time after it was asked for, so that the distances between ticks are those between the
/// clicks. The time is as long as the server needs to take a sample up before it is heard. Only ticks that were asked
/// for before the stream ran come later; they follow each other closely until they have caught up.
class TickPlacement {
public:
    /// What the server tells of a stream that moves on.
    struct Report {
        std::int64_t moment = 0;
        /// The frame that is being heard at that moment.
        std::int64_t heard = 0;
        /// The first frame that the server has not yet passed on towards the loudspeaker.
        std::int64_t waiting = 0;
        /// For how long the report was under way, in nanoseconds. What it says is off by as much as that.
        std::int64_t age = 0;
    };

    struct Range {
        std::int64_t begin = 0;
        std::int64_t end = 0;

        friend bool operator==(const Range&, const Range&) = default;
    };

    /// A tick that would be heard this much later than it should, in nanoseconds, is not worth hearing.
    static constexpr std::int64_t longestDelay = 1'000'000'000;

    /// `tickLength` is in frames.
    explicit TickPlacement(std::int64_t tickLength);

    /// A stream moves on evenly, so an inexact report does not replace an exact one that is not too old.
    void update(const Report& report);

    /// Where the tick goes that was asked for at `moment`; nothing when it comes too late, and before the first report.
    std::optional<std::int64_t> place(std::int64_t moment, std::int64_t now);

    /// What must fall silent for the tick under way to end at `moment`; nothing when none is.
    [[nodiscard]] std::optional<Range> restOfTick(std::int64_t moment, std::int64_t now) const;

private:
    [[nodiscard]] std::int64_t heardAt(std::int64_t moment) const;
    [[nodiscard]] std::int64_t target(std::int64_t moment, std::int64_t now) const;

    std::int64_t tickLength_;
    std::optional<Report> report_;
    /// Between being asked for and being heard, in frames.
    std::int64_t delay_ = 0;
    std::optional<std::int64_t> last_;
};

} // namespace velloran::platform::pulse
