#pragma once

#include "base/Date.h"
#include "model/ClickerStatus.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran {

/// The live record of one run.
struct AutoClickerRuntime {
    ClickerStatus status = ClickerStatus::idle;
    /// Clicks posted in this run.
    std::int64_t clicksCompleted = 0;
    /// Clicks left, when the run stops after a count.
    std::optional<std::int64_t> clicksRemaining;
    std::optional<Date> startedAt;
    /// When the next click is due, while it is waited for.
    std::optional<Date> nextClickAt;
    /// Time left in the start delay, in seconds.
    std::optional<double> countdownRemaining;
    /// Why the last start failed.
    std::optional<std::string> errorMessage;
    /// Whether the run waits for the mouse to be still.
    bool stationaryWaitActive = false;

    /// The record before any run.
    static const AutoClickerRuntime& initial();

    /// The status line. A countdown that is no number, or too large for a whole one, is a fatal error; so is a total
    /// number of clicks that overflows.
    [[nodiscard]] std::string message() const;

    friend bool operator==(const AutoClickerRuntime&, const AutoClickerRuntime&) = default;
};

} // namespace velloran
