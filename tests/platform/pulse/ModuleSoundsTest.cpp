#include "platform/posix/ModuleSounds.h"

#include "platform/pulse/Recorder.h"
#include "platform/pulse/SoundServer.h"
#include "platform/pulse/TickSample.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

    /// Whether one of so many ticks is heard, with a second after each.
    bool isHeard(posix::ModuleSounds& sounds, int ticks = 10) {
        const auto tick = sounds.load("Tink");
        const std::size_t before = recorded->ticks().size();
        for (int i = 0; i < ticks && recorded->ticks().size() == before; ++i) {
            tick->stop();
            tick->play();
            EXPECT_TRUE(recorded->recordMore(tickRate));
        }
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
    EXPECT_FALSE(isHeard(sounds, 2));
}

TEST_F(ModuleSoundsTest, IsSilentWithAModuleOfAnotherVersion) {
    posix::ModuleSounds sounds(modulePath, moduleVersion + "1");
    EXPECT_FALSE(isHeard(sounds, 2));
}

TEST(HeldUpModuleTest, NobodyWaitsForAModuleThatTakesItsTime) {
    // Whoever opens it waits until somebody writes.
    std::string folder = std::filesystem::temp_directory_path() / "velloran-module-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string path = folder + "/velloran-sound.so";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const auto start = std::chrono::steady_clock::now();
    {
        posix::ModuleSounds sounds(path, moduleVersion);
        sounds.prepare();
        const auto tick = sounds.load("Tink");
        tick->play();
        tick->stop();
        tick->play();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << "nor at the end";
    std::ofstream(path) << "no module";
    std::filesystem::remove_all(folder);
}

TEST_F(ModuleSoundsTest, AnUnknownSoundIsSilent) {
    posix::ModuleSounds sounds(modulePath, moduleVersion);
    const auto unknown = sounds.load("Submarine");
    unknown->play();
    unknown->stop();
    EXPECT_TRUE(isHeard(sounds));
}

} // namespace velloran::platform::pulse
