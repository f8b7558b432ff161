#include "platform/pulse/TickConnection.h"

#include "platform/pulse/SoundServer.h"

#include <gtest/gtest.h>
#include <pulse/mainloop.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace velloran::platform::pulse {

namespace {

/// Connects and lets the main loop turn until the connection is given up. Returns whether it was lost.
bool isLostInTheEnd() {
    pa_mainloop* const loop = pa_mainloop_new();
    bool isLost = false;
    {
        const TickConnection connection(*pa_mainloop_get_api(loop));
        while (connection.state() == TickConnection::State::inUse && pa_mainloop_iterate(loop, 1, nullptr) >= 0) {
        }
        isLost = connection.state() == TickConnection::State::lost;
    }
    pa_mainloop_free(loop);
    return isLost;
}

} // namespace

TEST(TickConnection, IsLostWithoutAServer) {
    const tests::SoundServer server;
    EXPECT_TRUE(isLostInTheEnd());
}

TEST(TickConnection, IsIdleSomeSecondsAfterTheLastTick) {
    tests::SoundServer server;
    ASSERT_TRUE(server.start());
    EXPECT_FALSE(isLostInTheEnd());
}

TEST(TickConnection, StartsNoServer) {
    const tests::SoundServer server;
    // The library would start this program as the server, if it were asked to. It never does for an administrator.
    const std::string program = server.folder() + "/server";
    const std::string trace = server.folder() + "/started";
    std::ofstream(program) << "#!/bin/sh\necho > '" << trace << "'\n";
    std::ofstream(server.folder() + "/client.conf") << "autospawn = yes\ndaemon-binary = " << program << '\n';
    for (const std::string& path : {program, server.folder()}) {
        ASSERT_EQ(chmod(path.c_str(), 0777), 0);
    }
    const pid_t child = fork();
    if (child == 0) {
        unsetenv("PULSE_SERVER");
        setenv("PULSE_CLIENTCONFIG", (server.folder() + "/client.conf").c_str(), 1);
        constexpr uid_t nobody = 65534;
        if (getuid() == 0 && setuid(nobody) != 0) {
            _exit(2);
        }
        _exit(isLostInTheEnd() ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(std::filesystem::exists(trace));
}

} // namespace velloran::platform::pulse
