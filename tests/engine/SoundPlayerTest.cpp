#include "engine/SoundPlayer.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace velloran {

using Journal = std::vector<std::string>;

TEST(SoundPlayer, LoadsTheTickOnceAtTheBeginning) {
    fakes::RecordingPlatform platform;
    SoundPlayer player(platform.sounds());
    EXPECT_EQ(platform.journal, Journal{"load sound Tink"});
    player.playClickTick();
    player.playClickTick();
    EXPECT_EQ(platform.count("load sound"), 1);
}

TEST(SoundPlayer, SecondTickCutsTheFirstOffAndStartsAnew) {
    fakes::RecordingPlatform platform;
    SoundPlayer player(platform.sounds());
    platform.journal.clear();
    player.playClickTick();
    platform.loop.advance(0.01);
    player.playClickTick();
    EXPECT_EQ(platform.journal, (Journal{"stop sound", "play sound", "stop sound", "play sound"}));
}

TEST(SoundPlayer, MissingSoundIsSilent) {
    fakes::RecordingPlatform platform;
    platform.hasSound = false;
    SoundPlayer player(platform.sounds());
    player.playClickTick();
    EXPECT_EQ(platform.journal, Journal{"load sound Tink"});
}

} // namespace velloran
