#include "platform/posix/ModuleSounds.h"

#include "platform/pulse/Recorder.h"
#include "platform/pulse/SoundServer.h"
#include "platform/pulse/TickSample.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velloran::platform::pulse {

namespace {

const std::string modulePath = VELLORAN_SOUND_MODULE;
const std::string moduleVersion = VELLORAN_VERSION;

/// The program's way to the tick, from the loading of the module on.
class ModuleSoundsTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(soundServer.start());
        recorded.emplace();
        ASSERT_TRUE(recorded->start());
    }

    /// Whether a tick is heard.
    bool isHeard(posix::ModuleSounds& sounds) {
        const auto tick = sounds.load("Tink");
        const std::size_t before = recorded->ticks().size();
        tick->stop();
        tick->play();
        EXPECT_TRUE(recorded->recordMore(tickRate));
        return recorded->ticks().size() > before;
    }

    tests::SoundServer soundServer;
    std::optional<tests::Recorder> recorded;
};

} // namespace

TEST_F(ModuleSoundsTest, ThePreparedTickIsHeard) {
    posix::ModuleSounds sounds(modulePath, moduleVersion);
    sounds.prepare();
    sounds.prepare();
    EXPECT_TRUE(isHeard(sounds));
}

TEST_F(ModuleSoundsTest, TheTickOfAnUnpreparedModuleIsHeard) {
    posix::ModuleSounds sounds(modulePath, moduleVersion);
    EXPECT_TRUE(isHeard(sounds));
}

TEST_F(ModuleSoundsTest, IsSilentWithoutTheModule) {
    posix::ModuleSounds sounds("/nowhere/velloran-sound.so", moduleVersion);
    sounds.prepare();
    EXPECT_FALSE(isHeard(sounds));
}

TEST_F(ModuleSoundsTest, IsSilentWithAModuleOfAnotherVersion) {
    posix::ModuleSounds sounds(modulePath, moduleVersion + "1");
    EXPECT_FALSE(isHeard(sounds));
}

TEST_F(ModuleSoundsTest, AnUnknownSoundIsSilent) {
    posix::ModuleSounds sounds(modulePath, moduleVersion);
    const auto unknown = sounds.load("Submarine");
    unknown->play();
    unknown->stop();
    EXPECT_TRUE(isHeard(sounds));
}

} // namespace velloran::platform::pulse
