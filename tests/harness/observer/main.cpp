#include "harness/observer/Options.h"
#include "harness/observer/Server.h"
#include "harness/observer/Session.h"

#include <sched.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace velloran::observer;

/// False when the system does not permit it.
bool takeRealTimePriority() {
    const sched_param priority{.sched_priority = 50};
    return sched_setscheduler(0, SCHED_FIFO, &priority) == 0;
}

ExitStatus observe(const std::vector<std::string>& arguments) {
    const Options options = readOptions(arguments);
    if (!options.error.empty()) {
        std::cerr << "velloran-observer: " << options.error << "; see --help\n";
        return ExitStatus::wrongArguments;
    }
    if (options.wantsHelp) {
        std::cout << helpText;
        return ExitStatus::good;
    }
    if (options.wantsRealTime) {
        std::cout << (takeRealTimePriority() ? "realtime yes" : "realtime no") << std::endl;
    }
    const auto server = Server::connect(options.display);
    if (!server) {
        std::cerr << "velloran-observer: no X server answers\n";
        return ExitStatus::noServer;
    }
    return Session(*server, options).run();
}

} // namespace

int main(int argc, char** argv) {
    // A lost server and a reader that has gone away are told by return values.
    std::signal(SIGPIPE, SIG_IGN);
    return static_cast<int>(observe({argv + 1, argv + argc}));
}
