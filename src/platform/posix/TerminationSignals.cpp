#include "platform/posix/TerminationSignals.h"

#include <signal.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace velloran::platform::posix {

namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

/// Counts the signals that have come. For as long as the program runs: a handler must always find it.
int countDescriptor = -1;

extern "C" void countSignal(int) {
    const int interrupted = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(countDescriptor, &one, sizeof one);
    errno = interrupted;
}

} // namespace

// By handlers and not by a mask: a mask goes on to programs that are started, and there is no moment to take it off for
// them where the toolkit starts them without a copy of this process. Handlers end with this program.
void TerminationSignals::hold() {
    countDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (countDescriptor < 0) {
        // Without the descriptor the signals at least end the program, if not cleanly.
        return;
    }

    struct sigaction action {};

    action.sa_handler = countSignal;
    action.sa_flags = SA_RESTART;
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : terminationSignals) {
        struct sigaction inherited {};

        // Whoever has hanging up ignored wants the program to outlive the terminal it was started from.
        if (signal == SIGHUP && sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_IGN) {
            continue;
        }
        sigaction(signal, &action, nullptr);
        sigaddset(&held, signal);
    }
    // Whoever started this program may have held them back.
    pthread_sigmask(SIG_UNBLOCK, &held, nullptr);
}

TerminationSignals::TerminationSignals(EventLoop& loop, std::function<void()> requested) {
    if (countDescriptor < 0) {
        return;
    }
    watch_ = loop.watch(countDescriptor, EventLoop::Readiness::readable, [requested = std::move(requested)] {
        std::uint64_t count = 0;
        if (read(countDescriptor, &count, sizeof count) == sizeof count) {
            requested();
        }
    });
}

TerminationSignals::~TerminationSignals() = default;

} // namespace velloran::platform::posix
