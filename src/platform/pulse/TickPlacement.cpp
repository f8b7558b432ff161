#include "platform/pulse/TickPlacement.h"

#include "platform/pulse/TickSample.h"

#include <algorithm>

namespace velloran::platform::pulse {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

/// For the way to the server, and for what the reports are off.
constexpr std::int64_t margin = tickRate * 20 / 1000;

/// How much of the margin may be used up before a tick counts as late.
constexpr std::int64_t tolerance = tickRate * 8 / 1000;

/// Ticks that catch up start this far from each other: far enough to be told apart, and closer than ticks ever come in.
constexpr std::int64_t closest = tickRate * 5 / 1000;

/// A report that was under way for longer is inexact. Most take a tenth of a millisecond; on a busy machine one in ten
/// takes ten.
constexpr std::int64_t exactAge = 2'000'000;

/// Clocks drift apart by less than a millisecond in this time.
constexpr std::int64_t exactFor = 10 * nanosecondsPerSecond;

std::int64_t frames(std::int64_t nanoseconds) {
    return nanoseconds * static_cast<std::int64_t>(tickRate) / nanosecondsPerSecond;
}

} // namespace

TickPlacement::TickPlacement(std::int64_t tickLength) : tickLength_(tickLength) {}

void TickPlacement::update(const Report& report) {
    if (report_ && report.age > exactAge && report.moment - report_->moment < exactFor) {
        return;
    }
    report_ = report;
    // It only grows: a delay that changes to and fro would shift the ticks against each other.
    delay_ = std::max(delay_, report.waiting - report.heard + margin);
}

std::optional<std::int64_t> TickPlacement::place(std::int64_t moment, std::int64_t now) {
    if (!report_ || now - moment > longestDelay) {
        return std::nullopt;
    }
    std::int64_t place = target(moment, now);
    if (last_) {
        place = std::max(place, *last_ + closest);
    }
    if (place - target(now, now) > frames(longestDelay)) {
        return std::nullopt;
    }
    last_ = place;
    return place;
}

std::optional<TickPlacement::Range> TickPlacement::restOfTick(std::int64_t moment, std::int64_t now) const {
    // One that has not begun is not under way.
    if (!last_ || target(moment, now) < *last_) {
        return std::nullopt;
    }
    // It is heard for as long as the next one would let it be heard.
    const Range rest{std::max(target(moment, now), *last_ + closest), *last_ + tickLength_};
    return rest.begin < rest.end ? std::optional(rest) : std::nullopt;
}

std::int64_t TickPlacement::heardAt(std::int64_t moment) const {
    return report_->heard + frames(moment - report_->moment);
}

std::int64_t TickPlacement::target(std::int64_t moment, std::int64_t now) const {
    const std::int64_t earliest = heardAt(now) + delay_ - tolerance;
    return std::max<std::int64_t>({heardAt(moment) + delay_, earliest, 0});
}

} // namespace velloran::platform::pulse
