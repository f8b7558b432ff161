#pragma once

#include <array>
#include <ostream>
#include <string_view>

namespace velloran {

/// One thing that happens to the program. `value` says how much or which; every value has a meaning for every kind, and
/// the smaller ones are the simpler ones.
struct RunEvent {
    /// In the order of their simplicity.
    enum class Kind {
        start,
        stop,
        pass,
        press,
        limit,
        interval,
        delay,
        stillness,
        apply,
        jump,
        moving,
        forbid,
        permit,
        report,
        refresh,
        clock,
        /// Somebody who is told of a change acts then; only in what is not compared with the reference.
        interrupt,
    };

    static constexpr std::array<std::string_view, 17> names{
        "start", "stop",   "pass",   "press",  "limit",  "interval", "delay",     "stillness", "apply preset",
        "jump",  "moving", "forbid", "permit", "report", "refresh",  "set clock", "interrupt"};

    static constexpr int values = 1000;

    Kind kind = Kind::start;
    int value = 0;

    friend std::ostream& operator<<(std::ostream& out, const RunEvent& event) {
        return out << names.at(static_cast<std::size_t>(event.kind)) << ' ' << event.value;
    }
};

} // namespace velloran
