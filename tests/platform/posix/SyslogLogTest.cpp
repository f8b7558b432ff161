#include "platform/posix/SyslogLog.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <optional>
#include <string>

namespace velloran::platform::posix {

namespace {

constexpr int noNamespace = 77;

std::string contents(int descriptor) {
    std::string all;
    std::array<char, 512> buffer{};
    for (ssize_t size = read(descriptor, buffer.data(), buffer.size()); size > 0;
         size = read(descriptor, buffer.data(), buffer.size())) {
        all.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return all;
}

/// A device folder of this process's own, empty. False where the system does not allow that.
bool hideDevices() {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/dev", "tmpfs", 0, nullptr) == 0;
}

int listenToLog() {
    const int log = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/dev/log");
    return bind(log, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ? log : -1;
}

/// What arrived where when a line was written.
struct Written {
    std::string systemLog;
    std::string standardError;
};

/// Writes the line in a process of its own that has such a system log, or none. Nothing where that cannot be arranged.
std::optional<Written> write(const std::string& line, bool hasSystemLog) {
    std::array<int, 2> systemLog{};
    std::array<int, 2> standardError{};
    if (pipe2(systemLog.data(), O_CLOEXEC) != 0 || pipe2(standardError.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    const pid_t child = fork();
    if (child == 0) {
        if (!hideDevices()) {
            _exit(noNamespace);
        }
        const int log = hasSystemLog ? listenToLog() : -1;
        dup2(standardError[1], STDERR_FILENO);
        {
            SyslogLog written;
            written.write(line);
        }
        if (hasSystemLog) {
            std::array<char, 512> message{};
            const ssize_t size = recv(log, message.data(), message.size(), 0);
            if (size <= 0 || ::write(systemLog[1], message.data(), static_cast<std::size_t>(size)) != size) {
                _exit(1);
            }
        }
        _exit(0);
    }
    close(systemLog[1]);
    close(standardError[1]);
    Written result{contents(systemLog[0]), contents(standardError[0])};
    close(systemLog[0]);
    close(standardError[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (WEXITSTATUS(status) == noNamespace) {
        return std::nullopt;
    }
    EXPECT_EQ(status, 0);
    return result;
}

} // namespace

TEST(SyslogLog, WritesToTheSystemLogAndToStandardError) {
    const auto written = write("Something: 100 %s of it", true);
    if (!written) {
        GTEST_SKIP() << "This system gives the test no device folder of its own";
    }
    EXPECT_NE(written->systemLog.find("velloran["), std::string::npos) << written->systemLog;
    EXPECT_TRUE(written->systemLog.ends_with(": Something: 100 %s of it")) << written->systemLog;
    EXPECT_EQ(written->standardError, "Something: 100 %s of it\n");
}

TEST(SyslogLog, KeepsALineOneLine) {
    const auto written = write("first\nsecond", true);
    if (!written) {
        GTEST_SKIP() << "This system gives the test no device folder of its own";
    }
    EXPECT_TRUE(written->systemLog.ends_with(": first second")) << written->systemLog;
    EXPECT_EQ(written->standardError, "first second\n");
}

TEST(SyslogLog, WritesToStandardErrorWhereThereIsNoSystemLog) {
    const auto written = write("alone", false);
    if (!written) {
        GTEST_SKIP() << "This system gives the test no device folder of its own";
    }
    EXPECT_EQ(written->systemLog, "");
    EXPECT_EQ(written->standardError, "alone\n");
}

} // namespace velloran::platform::posix
