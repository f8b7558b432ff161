#pragma once

#include "harness/observer/InputWatcher.h"

#include <map>
#include <string>
#include <vector>

namespace velloran::observer {

/// What a row of clicks looked like from outside. Times are milliseconds, of arrival here, from press to press.
struct ClickReport {
    std::size_t presses = 0;
    std::size_t releases = 0;
    /// Whether every press was followed by the release of the same button before the next press.
    bool areInPairs = true;
    /// Presses for each button.
    std::map<unsigned, std::size_t> pressesOfButton;
    /// All places where the pointer was, without repetition, in order of appearance; the first few only.
    std::vector<Place> places;

    double meanInterval = 0.0;
    double shortestInterval = 0.0;
    double longestInterval = 0.0;
    /// How far intervals were from the nominal one, or from their mean where none is given.
    double medianJitter = 0.0;
    double jitter99 = 0.0;
    double longestJitter = 0.0;
    /// How much later than at the nominal interval the last press came; 0 where none is given.
    double drift = 0.0;
    /// Mean by the server's own time stamps.
    double meanServerInterval = 0.0;
};

/// Sums up button events of one source, in the order of their arrival. `nominalInterval` is in seconds; 0 when unknown.
ClickReport summarize(const std::vector<InputEvent>& events, double nominalInterval);

/// The report as one line of JSON.
std::string toJson(const ClickReport& report);

} // namespace velloran::observer
