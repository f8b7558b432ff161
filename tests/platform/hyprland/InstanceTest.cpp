#include "platform/hyprland/instance.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace velloran::tests {

using platform::hyprland::requestSocket;

class HyprlandInstanceTest : public testing::Test {
protected:
    HyprlandInstanceTest() {
        std::string name = testing::TempDir() + "velloran-instance-XXXXXX";
        folder = mkdtemp(name.data());
    }

    ~HyprlandInstanceTest() override { std::filesystem::remove_all(folder); }

    void writeLock(const std::string& text) const { std::ofstream(folder + "/hyprland.lock") << text; }

    std::string folder;
};

TEST_F(HyprlandInstanceTest, TheCompositorOfTheSessionTakesRequests) {
    writeLock("4711\nwayland-1\n");
    EXPECT_EQ(requestSocket(folder, "wayland-1"), folder + "/.socket.sock");
    EXPECT_EQ(requestSocket(folder, "/run/user/1000/wayland-1"), folder + "/.socket.sock") << "or by its whole path";
}

TEST_F(HyprlandInstanceTest, OneThatAnotherCompositorWasStartedInIsNotAsked) {
    writeLock("4711\nwayland-1\n");
    EXPECT_EQ(requestSocket(folder, "wayland-2"), std::nullopt);
}

TEST_F(HyprlandInstanceTest, OneThatDoesNotSayItsNameIsTakenAtItsWord) {
    EXPECT_EQ(requestSocket(folder, "wayland-1"), folder + "/.socket.sock");
    writeLock("4711\n");
    EXPECT_EQ(requestSocket(folder, "wayland-1"), folder + "/.socket.sock");
}

} // namespace velloran::tests
