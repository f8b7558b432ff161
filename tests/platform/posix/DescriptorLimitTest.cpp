#include "platform/posix/descriptorLimit.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velloran::platform::posix {

namespace {

/// How many descriptors a process with these limits may have open after it has asked for enough; 0 where it may not
/// have enough.
int allowedFrom(rlimit limits) {
    const pid_t child = fork();
    if (child == 0) {
        if (setrlimit(RLIMIT_NOFILE, &limits) != 0) {
            _exit(255);
        }
        const bool isEnough = allowEnoughDescriptors();
        getrlimit(RLIMIT_NOFILE, &limits);
        _exit(isEnough ? static_cast<int>(limits.rlim_cur) : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(DescriptorLimitTest, IsRaisedWhereThatIsAllowed) {
    EXPECT_EQ(allowedFrom({18, 200}), 64);
    EXPECT_EQ(allowedFrom({63, 64}), 64);
}

TEST(DescriptorLimitTest, IsLeftAloneWhereItIsEnough) {
    EXPECT_EQ(allowedFrom({64, 200}), 64);
    EXPECT_EQ(allowedFrom({200, 200}), 200);
}

TEST(DescriptorLimitTest, IsNotEnoughWhereTheSystemAllowsNoMore) {
    EXPECT_EQ(allowedFrom({18, 18}), 0);
    EXPECT_EQ(allowedFrom({18, 63}), 0);
}

} // namespace velloran::platform::posix
