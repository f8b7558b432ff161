#include "platform/posix/TerminationSignals.h"

#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <utility>

namespace velloran::platform::posix {

namespace {

sigset_t terminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

void TerminationSignals::block() {
    const sigset_t signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // What a process holds back its children hold back as well, and a browser is not to outlive the session for that.
    pthread_atfork(nullptr, nullptr, [] {
        const sigset_t held = terminationSignals();
        pthread_sigmask(SIG_UNBLOCK, &held, nullptr);
    });
}

TerminationSignals::TerminationSignals(EventLoop& loop, std::function<void()> requested) {
    const sigset_t signals = terminationSignals();
    descriptor_ = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor_ < 0) {
        // Without the descriptor the signals at least end the program, if not cleanly.
        pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
        return;
    }
    watch_ = loop.watch(descriptor_, [descriptor = descriptor_, requested = std::move(requested)] {
        signalfd_siginfo received{};
        while (read(descriptor, &received, sizeof received) == sizeof received) {
            requested();
        }
    });
}

TerminationSignals::~TerminationSignals() {
    watch_.reset();
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

} // namespace velloran::platform::posix
