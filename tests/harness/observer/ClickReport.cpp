#include "harness/observer/ClickReport.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <locale>
#include <numeric>
#include <optional>
#include <sstream>

namespace velloran::observer {

namespace {

constexpr double nanosecondsPerMillisecond = 1e6;
constexpr double millisecondsPerSecond = 1e3;
constexpr std::size_t mostPlaces = 16;

/// The smallest value that at least that share of all values does not exceed.
double percentile(const std::vector<double>& sorted, double share) {
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
    return sorted[std::clamp<std::size_t>(rank, 1, sorted.size()) - 1];
}

void addIntervals(ClickReport& report, const std::vector<const InputEvent*>& presses, double nominalInterval) {
    std::vector<double> intervals;
    for (std::size_t i = 1; i < presses.size(); ++i) {
        const auto difference = static_cast<double>(presses[i]->arrival - presses[i - 1]->arrival);
        intervals.push_back(difference / nanosecondsPerMillisecond);
    }
    if (intervals.empty()) {
        return;
    }
    const double total = std::accumulate(intervals.begin(), intervals.end(), 0.0);
    const auto count = static_cast<double>(intervals.size());
    report.meanInterval = total / count;
    report.shortestInterval = *std::min_element(intervals.begin(), intervals.end());
    report.longestInterval = *std::max_element(intervals.begin(), intervals.end());
    // The server's clock wraps around after 49 days, which the unsigned difference gets right.
    report.meanServerInterval = static_cast<double>(presses.back()->serverTime - presses.front()->serverTime) / count;

    const double nominal = nominalInterval * millisecondsPerSecond;
    const double expected = nominal > 0.0 ? nominal : report.meanInterval;
    std::vector<double> jitter;
    std::transform(intervals.begin(), intervals.end(), std::back_inserter(jitter),
                   [expected](double interval) { return std::abs(interval - expected); });
    std::sort(jitter.begin(), jitter.end());
    report.medianJitter = percentile(jitter, 0.5);
    report.jitter99 = percentile(jitter, 0.99);
    report.longestJitter = jitter.back();
    report.drift = nominal > 0.0 ? total - nominal * count : 0.0;
}

} // namespace

ClickReport summarize(const std::vector<InputEvent>& events, double nominalInterval) {
    ClickReport report;
    std::vector<const InputEvent*> presses;
    std::optional<unsigned> down;
    for (const InputEvent& event : events) {
        if (event.kind == InputEvent::Kind::buttonPress) {
            report.areInPairs = report.areInPairs && !down;
            down = event.code;
            ++report.presses;
            ++report.pressesOfButton[event.code];
            presses.push_back(&event);
        } else if (event.kind == InputEvent::Kind::buttonRelease) {
            report.areInPairs = report.areInPairs && down == event.code;
            down.reset();
            ++report.releases;
        } else {
            continue;
        }
        const bool isKnown = std::find(report.places.begin(), report.places.end(), event.place) != report.places.end();
        if (!isKnown && report.places.size() < mostPlaces) {
            report.places.push_back(event.place);
        }
    }
    report.areInPairs = report.areInPairs && !down;
    addIntervals(report, presses, nominalInterval);
    return report;
}

std::string toJson(const ClickReport& report) {
    std::ostringstream json;
    json.imbue(std::locale::classic());
    json << std::boolalpha << std::fixed << std::setprecision(3);
    json << "{\"clicks\": " << report.presses << ", \"presses\": " << report.presses
         << ", \"releases\": " << report.releases << ", \"inPairs\": " << report.areInPairs << ", \"buttons\": {";
    const char* separator = "";
    for (const auto& [button, count] : report.pressesOfButton) {
        json << separator << '"' << button << "\": " << count;
        separator = ", ";
    }
    json << "}, \"places\": [";
    separator = "";
    for (const Place& place : report.places) {
        json << separator << '[' << place.x << ", " << place.y << ']';
        separator = ", ";
    }
    json << "], \"meanIntervalMs\": " << report.meanInterval << ", \"shortestIntervalMs\": " << report.shortestInterval
         << ", \"longestIntervalMs\": " << report.longestInterval << ", \"jitterP50Ms\": " << report.medianJitter
         << ", \"jitterP99Ms\": " << report.jitter99 << ", \"jitterMaxMs\": " << report.longestJitter
         << ", \"driftMs\": " << report.drift << ", \"meanServerIntervalMs\": " << report.meanServerInterval << '}';
    return json.str();
}

} // namespace velloran::observer
