#include "platform/posix/fileSizeLimit.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace velloran::platform::posix {

namespace {

/// The exit status of `work`, in a process of its own that may write nothing to files.
int statusWithoutRoom(int (*work)()) {
    const pid_t child = fork();
    if (child == 0) {
        outliveFileSizeLimit();
        const rlimit none{0, 0};
        _exit(setrlimit(RLIMIT_FSIZE, &none) == 0 ? work() : 100);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

TEST(FileSizeLimitTest, ItIsAnErrorForWhoeverWrites) {
    EXPECT_EQ(statusWithoutRoom([] {
                  const int file = memfd_create("file", MFD_CLOEXEC);
                  return write(file, "x", 1) < 0 && errno == EFBIG ? 0 : 1;
              }),
              0);
}

TEST(FileSizeLimitTest, StartedProgramsMeetItAsUsual) {
    EXPECT_EQ(statusWithoutRoom([] {
                  const char* const arguments[] = {"sh", "-c", "kill -XFSZ $$", nullptr};
                  pid_t child = 0;
                  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, const_cast<char* const*>(arguments), environ) !=
                      0) {
                      return 1;
                  }
                  int status = 0;
                  waitpid(child, &status, 0);
                  return WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ ? 0 : 2;
              }),
              0);
}

} // namespace velloran::platform::posix
