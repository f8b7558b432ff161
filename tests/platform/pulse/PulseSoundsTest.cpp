#include "platform/pulse/PulseSounds.h"

#include "Recorder.h"
#include "SoundServer.h"
#include "platform/pulse/TickSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace velloran::platform::pulse {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Frames in that many milliseconds.
constexpr std::size_t framesIn(std::size_t milliseconds) {
    return tickRate * milliseconds / 1000;
}

class PulseSoundsTest : public testing::Test {
protected:
    void startRecording() {
        ASSERT_TRUE(server.start());
        recorder.emplace();
        ASSERT_TRUE(recorder->start());
    }

    /// Plays ticks in that distance, as the click loop does it, and records until all could be heard.
    void playTicks(int count, Clock::duration distance) {
        const Clock::time_point begin = Clock::now();
        for (int index = 0; index < count; ++index) {
            recorder->recordUntil(begin + index * distance);
            tick->stop();
            tick->play();
        }
        ASSERT_TRUE(recorder->recordMore(framesIn(1500)));
    }

    tests::SoundServer server;
    std::optional<tests::Recorder> recorder;
    PulseSounds sounds;
    std::unique_ptr<Sound> tick = sounds.load("Tink");
};

/// The distances between the ticks in milliseconds, for the message of a failure.
std::string distances(const std::vector<std::size_t>& ticks) {
    std::string text;
    for (std::size_t index = 1; index < ticks.size(); ++index) {
        text += std::to_string(static_cast<double>(ticks[index] - ticks[index - 1]) * 1000.0 / tickRate) + ' ';
    }
    return text;
}

} // namespace

TEST_F(PulseSoundsTest, HasOneSound) {
    EXPECT_NE(tick, nullptr);
    EXPECT_EQ(sounds.load("Submarine"), nullptr);
    EXPECT_EQ(sounds.load(""), nullptr);
}

TEST_F(PulseSoundsTest, TicksAt200MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(20, 200ms));
    EXPECT_EQ(recorder->ticks().size(), 20U) << distances(recorder->ticks());
}

TEST_F(PulseSoundsTest, TicksAt50MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(100, 50ms));
    EXPECT_EQ(recorder->ticks().size(), 100U) << distances(recorder->ticks());
}

TEST_F(PulseSoundsTest, TicksAt10MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(200, 10ms));
    EXPECT_EQ(recorder->ticks().size(), 200U) << distances(recorder->ticks());
}

} // namespace velloran::platform::pulse
