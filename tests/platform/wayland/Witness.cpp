#include "platform/wayland/Witness.h"

#include <sstream>

namespace velloran::tests {

Witness::Witness(const Sway& sway) : process_(sway.withEnvironment({WITNESS}), false) {
    isReady_ = process_.readLine() == "ready";
}

std::size_t Witness::ask(const std::string& question) {
    process_.writeLine(question);
    std::istringstream answer(process_.readLine().value_or(""));
    std::size_t number = 0;
    answer >> number;
    return number;
}

std::size_t Witness::releases() {
    return ask("releases");
}

std::vector<observer::InputEvent> Witness::report() {
    std::vector<observer::InputEvent> events(ask("report"));
    for (observer::InputEvent& event : events) {
        std::istringstream line(process_.readLine().value_or(""));
        std::string kind;
        line >> kind >> event.code >> event.serverTime >> event.arrival;
        event.kind =
            kind == "down" ? observer::InputEvent::Kind::buttonPress : observer::InputEvent::Kind::buttonRelease;
    }
    return events;
}

} // namespace velloran::tests
