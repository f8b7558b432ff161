#include "platform/Platform.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

namespace velloran::platform {

TEST(PlatformDeathTest, ThereIsNoneUntilOneIsInstalled) {
    EXPECT_DEATH(Platform::current(), "^Fatal error: No platform is installed\n$");
}

TEST(PlatformDeathTest, ThereIsOneAtATime) {
    const fakes::RecordingPlatform first;
    EXPECT_DEATH(fakes::RecordingPlatform(), "^Fatal error: A platform is installed already\n$");
}

TEST(Platform, IsThereForAsLongAsItIsInstalled) {
    for (int round = 0; round < 2; ++round) {
        const fakes::RecordingPlatform installed;
        EXPECT_EQ(&Platform::current().mainLoop, &installed.loop);
    }
}

} // namespace velloran::platform
