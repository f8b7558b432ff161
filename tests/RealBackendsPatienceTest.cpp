#include "realBackends.h"

#include "fakes/VirtualLoop.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace velloran {
namespace {

/// Something that can be connected to, and never says anything.
class SilentServer {
public:
    SilentServer() {
        std::string name = std::filesystem::temp_directory_path() / "velloran-silent-XXXXXX";
        folder_ = mkdtemp(name.data());
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path().copy(address.sun_path, sizeof address.sun_path - 1);
        isUp_ = bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                listen(listener_, 16) == 0;
    }

    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    ~SilentServer() {
        close(listener_);
        std::filesystem::remove_all(folder_);
    }

    [[nodiscard]] bool isUp() const { return isUp_; }

    [[nodiscard]] std::string path() const { return folder_ / "socket"; }

private:
    const int listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::filesystem::path folder_;
    bool isUp_ = false;
};

TEST(RealBackendsPatience, IsHalfASecondForAllQuestionsToACompositor) {
    using Clock = std::chrono::steady_clock;
    const SilentServer compositor;
    ASSERT_TRUE(compositor.isUp());
    fakes::VirtualLoop loop;
    const Backends backends = realBackends(loop, {});
    const auto start = Clock::now();
    const auto clicks = backends.virtualPointer(compositor.path());
    EXPECT_TRUE(clicks.ok()) << "it may still have a pointer";
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(490));
    const auto keys = backends.compositor(compositor.path());
    EXPECT_TRUE(keys.ok()) << "it may still tell its keyboard";
    const auto hotKeys = backends.compositorHotKeys(compositor.path());
    ASSERT_NE(hotKeys, nullptr);
    EXPECT_TRUE(hotKeys->get().hotKeys.isAwaited);
    // Half a second for each would be one and a half.
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1000));
}

} // namespace
} // namespace velloran
