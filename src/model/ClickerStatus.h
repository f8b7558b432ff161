#pragma once

#include "model/RawValue.h"

#include <array>
#include <string_view>

namespace velloran {

/// The phase the clicker is in. `arming` and `paused` belong to the vocabulary, though no run enters them.
enum class ClickerStatus { idle, arming, delayed, running, paused, completed, error };

/// All of them, in order.
inline constexpr std::array allClickerStatuses{
    ClickerStatus::idle,   ClickerStatus::arming,    ClickerStatus::delayed, ClickerStatus::running,
    ClickerStatus::paused, ClickerStatus::completed, ClickerStatus::error,
};

/// The enumerator's own name as text.
std::string_view rawValue(ClickerStatus status);

/// The word shown large in the status card.
std::string_view headline(ClickerStatus status);

/// The name of the theme's colour for the phase.
std::string_view accentColorName(ClickerStatus status);

/// Whether a run is under way in this phase: what a stop can end.
bool isActive(ClickerStatus status);

template<>
std::optional<ClickerStatus> fromRawValue(std::string_view text);

} // namespace velloran
