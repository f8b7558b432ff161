#pragma once

#include "model/AutoClickerConfig.h"
#include "model/AutoClickerRuntime.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran {

/// How far a counted run has come, against the count that the configuration names at the moment.
struct RunProgress {
    std::int64_t completed = 0;
    /// Any number: what has been read from a file may be invalid.
    std::int64_t total = 0;

    /// The progress to show; nothing unless a run is under way and the configuration names a count.
    static std::optional<RunProgress> of(const AutoClickerRuntime& runtime, const AutoClickerConfig& config);

    /// From 0 to 1; 0 where there is no positive total.
    [[nodiscard]] double fraction() const;

    /// "37 / 100 clicks completed".
    [[nodiscard]] std::string text() const;

    friend bool operator==(const RunProgress&, const RunProgress&) = default;
};

} // namespace velloran
