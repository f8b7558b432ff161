#pragma once

#include <compare>

namespace velloran {

/// A point in time on the wall clock, held as seconds since 2001-01-01 00:00:00 UTC. That number is also the stored
/// form, so a date read back equals the one written, to the bit.
class Date {
public:
    /// The reference date itself.
    constexpr Date() = default;

    /// The moment that many seconds after the reference date (before it, when negative).
    constexpr explicit Date(double secondsSinceReference) : seconds_(secondsSinceReference) {}

    /// Seconds since the reference date.
    [[nodiscard]] constexpr double secondsSinceReference() const { return seconds_; }

    // The comparison with zero that the compiler writes looks like a pointer's. NOLINTNEXTLINE(modernize-use-nullptr)
    friend constexpr auto operator<=>(const Date&, const Date&) = default;

    /// The moment `seconds` later.
    friend constexpr Date operator+(Date date, double seconds) { return Date(date.seconds_ + seconds); }

    /// Seconds from `earlier` to `later`.
    friend constexpr double operator-(Date later, Date earlier) { return later.seconds_ - earlier.seconds_; }

private:
    double seconds_ = 0.0;
};

} // namespace velloran
