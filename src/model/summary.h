#pragma once

#include "model/AutoClickerConfig.h"

#include <string>

/// The configuration in words, as the summary tells it. Any configuration that can be read has its words, valid or not.
namespace velloran::summary {

/// The interval between two clicks: "7.00 seconds".
std::string interval(const AutoClickerConfig& config);

/// When a run ends: "100 clicks" or "Run until stopped". No count stored reads as none.
std::string stop(const AutoClickerConfig& config);

/// The label of the hotkey, or "Not set".
std::string hotkey(const AutoClickerConfig& config);

/// The start delay: "3 seconds".
std::string delay(const AutoClickerConfig& config);

/// How long the mouse has to be still: "1.0 seconds", or "Off".
std::string stationaryCheck(const AutoClickerConfig& config);

} // namespace velloran::summary
