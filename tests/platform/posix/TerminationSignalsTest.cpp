#include "platform/posix/TerminationSignals.h"

#include "fakes/VirtualLoop.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>

namespace velloran::platform::posix {

namespace {

/// The exit status of a program that is started without a copy of this process, so that nothing of this program runs in
/// between.
int statusOf(const char* program, const char* const* arguments) {
    pid_t child = 0;
    if (posix_spawn(&child, program, nullptr, nullptr, const_cast<char* const*>(arguments), environ) != 0) {
        return -1;
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(TerminationSignalsTest, everySignalIsACallAndEndsNothing) {
    signal(SIGHUP, SIG_DFL);
    TerminationSignals::hold();
    raise(SIGHUP);
    fakes::VirtualLoop loop;
    int calls = 0;
    const TerminationSignals signals(loop, [&calls] { calls += 1; });
    loop.look();
    EXPECT_EQ(calls, 1);
    loop.look();
    EXPECT_EQ(calls, 1);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        calls = 0;
        raise(signal);
        loop.look();
        EXPECT_EQ(calls, 1) << signal;
    }
}

TEST(TerminationSignalsTest, theyAreHeardAlsoWhereTheStarterHeldThemBack) {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &held, nullptr);
    TerminationSignals::hold();
    fakes::VirtualLoop loop;
    int calls = 0;
    const TerminationSignals signals(loop, [&calls] { calls += 1; });
    raise(SIGTERM);
    loop.look();
    EXPECT_EQ(calls, 1);
}

TEST(TerminationSignalsTest, anIgnoredHangUpStaysIgnored) {
    signal(SIGHUP, SIG_IGN);
    TerminationSignals::hold();
    fakes::VirtualLoop loop;
    int calls = 0;
    const TerminationSignals signals(loop, [&calls] { calls += 1; });
    raise(SIGHUP);
    loop.look();
    EXPECT_EQ(calls, 0);
    raise(SIGTERM);
    loop.look();
    EXPECT_EQ(calls, 1);
}

TEST(TerminationSignalsTest, startedProgramsHoldNothingBack) {
    TerminationSignals::hold();
    const char* const arguments[] = {"grep", "-qE", "^SigBlk:[[:blank:]]*0+$", "/proc/self/status", nullptr};
    EXPECT_EQ(statusOf("/bin/grep", arguments), 0);
}

} // namespace velloran::platform::posix
