#include "platform/bus/ActivationToken.h"

#include <gtest/gtest.h>

namespace velloran::platform::bus {
namespace {

std::optional<std::uint32_t> serverTimeIn(const char* startupId) {
    return ActivationToken{{}, startupId}.serverTime();
}

TEST(ActivationTokenTest, TheTimeEndsTheIdentifier) {
    EXPECT_EQ(serverTimeIn("launcher/program/12-3-host_TIME4711"), 4711U);
    EXPECT_EQ(serverTimeIn("a_TIME1_TIME4294967295"), 4294967295U);
}

TEST(ActivationTokenTest, NoTimeIsNotTakenForOne) {
    for (const char* const identifier :
         {"", "launcher", "a_TIME", "a_TIME0", "a_TIME12x", "a_TIME-1", "a_TIME4294967296"}) {
        EXPECT_EQ(serverTimeIn(identifier), std::nullopt) << identifier;
    }
}

TEST(ActivationTokenTest, TravelsOverTheBus) {
    const ActivationToken token{"wayland token", "launcher_TIME1"};
    EXPECT_EQ(ActivationToken::fromPlatformData(token.platformData()), token);
    EXPECT_TRUE(ActivationToken().platformData().isEmpty());
    EXPECT_EQ(ActivationToken::fromPlatformData({{"activation-token", 5}, {"other", "x"}}).startupId, "");
}

TEST(ActivationTokenTest, IsReadFromTheEnvironment) {
    qputenv("XDG_ACTIVATION_TOKEN", "one");
    qputenv("DESKTOP_STARTUP_ID", "two");
    EXPECT_EQ(ActivationToken::fromEnvironment(), (ActivationToken{"one", "two"}));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("DESKTOP_STARTUP_ID");
    EXPECT_EQ(ActivationToken::fromEnvironment(), ActivationToken());
}

} // namespace
} // namespace velloran::platform::bus
