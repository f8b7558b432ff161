#include "platform/pulse/PulseSounds.h"

#include "fakes/NoMoreThreads.h"
#include "platform/pulse/HeldUp.h"
#include "platform/pulse/Recorder.h"
#include "platform/pulse/SoundServer.h"
#include "platform/pulse/TickSample.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

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

/// The distances between the ticks in milliseconds, for the message of a failure.
std::string distances(const std::vector<std::size_t>& ticks) {
    std::string text;
    for (std::size_t index = 1; index < ticks.size(); ++index) {
        text += std::to_string(static_cast<double>(ticks[index] - ticks[index - 1]) * 1000.0 / tickRate) + ' ';
    }
    return text;
}

class PulseSoundsTest : public testing::Test {
protected:
    /// Whatever else the machine does, the test, the sound server and the recording go first, where that is permitted.
    /// It is the way of the ticks that is judged, not how busy the machine is.
    static void SetUpTestSuite() {
        const sched_param priority{1};
        sched_setscheduler(0, SCHED_RR, &priority);
    }

    static void TearDownTestSuite() {
        const sched_param priority{0};
        sched_setscheduler(0, SCHED_OTHER, &priority);
    }

    void startRecording() {
        ASSERT_TRUE(server.start());
        recorder.emplace();
        ASSERT_TRUE(recorder->start());
    }

    /// Plays ticks in that distance, as the click loop does it, and records until nothing more is heard.
    void playTicks(int count, Clock::duration distance) {
        const Clock::time_point begin = Clock::now();
        worstDelay = Clock::duration::zero();
        for (int index = 0; index < count; ++index) {
            const Clock::time_point due = begin + index * distance;
            recorder->recordUntil(due);
            worstDelay = std::max(worstDelay, Clock::now() - due);
            tick->stop();
            tick->play();
        }
        recordToTheEnd();
    }

    /// Plays that many ticks in that distance and expects to hear as many. A machine too busy to let the test and the
    /// sound server run when they want to cannot judge that: then once more, a few times.
    void expectAllHeard(std::size_t count, Clock::duration distance) {
        constexpr auto tooBusy = 5ms;
        constexpr int attempts = 5;
        std::size_t heard = 0;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            const std::size_t before = recorder->ticks().size();
            const auto heldUpBefore = tests::heldUp(getpid()) + tests::heldUp(server.process());
            ASSERT_NO_FATAL_FAILURE(playTicks(static_cast<int>(count), distance));
            heard = recorder->ticks().size() - before;
            const auto heldUp = tests::heldUp(getpid()) + tests::heldUp(server.process()) - heldUpBefore;
            const bool isBusy =
                worstDelay > tooBusy || heldUp > Clock::duration(distance) * static_cast<int>(count) / 20;
            if (heard == count || !isBusy) {
                break;
            }
        }
        EXPECT_EQ(heard, count) << distances(recorder->ticks());
    }

    void recordToTheEnd() {
        std::size_t before = 0;
        do {
            before = recorder->ticks().size();
            ASSERT_TRUE(recorder->recordMore(framesIn(500)));
            // What the server had in hand beforehand comes in faster than it is heard.
            recorder->recordUntil(Clock::now() + 500ms);
        } while (recorder->ticks().size() != before);
    }

    /// Plays ticks until one is heard.
    void playUntilHeard() {
        const std::size_t before = recorder->ticks().size();
        while (recorder->ticks().size() == before) {
            tick->play();
            ASSERT_TRUE(recorder->recordMore(framesIn(250)));
        }
    }

    tests::SoundServer server;
    std::optional<tests::Recorder> recorder;
    /// By how much the last run of `playTicks` was late at worst.
    Clock::duration worstDelay = Clock::duration::zero();
    PulseSounds sounds;
    std::unique_ptr<Sound> tick = sounds.load("Tink");
};

} // namespace

TEST_F(PulseSoundsTest, HasOneSound) {
    EXPECT_NE(tick, nullptr);
    EXPECT_EQ(sounds.load("Submarine"), nullptr);
    EXPECT_EQ(sounds.load(""), nullptr);
}

TEST_F(PulseSoundsTest, TheFirstTickIsHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(1, 0ms));
    EXPECT_EQ(recorder->ticks().size(), 1U);
}

TEST_F(PulseSoundsTest, TicksAt200MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    expectAllHeard(15, 200ms);
}

TEST_F(PulseSoundsTest, TicksAt50MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    expectAllHeard(60, 50ms);
}

TEST_F(PulseSoundsTest, TicksAt10MillisecondsAreAllHeard) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    expectAllHeard(200, 10ms);
}

TEST_F(PulseSoundsTest, ATickCutsTheOneBeforeAndIsHeardFromItsStart) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(1, 0ms));
    ASSERT_NO_FATAL_FAILURE(playTicks(2, 10ms));
    const auto ticks = recorder->ticks();
    ASSERT_EQ(ticks.size(), 3U);
    // The last one is there to its end; nothing of the one before is mixed into it.
    const auto sample = tickSample();
    EXPECT_TRUE(
        std::equal(sample.begin(), sample.end(), recorder->samples().begin() + static_cast<std::ptrdiff_t>(ticks[2])));
    EXPECT_GE(ticks[2] - ticks[1], framesIn(5));
}

TEST_F(PulseSoundsTest, StoppingEndsATick) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    // Connected, so that the next tick is on its way at once.
    ASSERT_NO_FATAL_FAILURE(playTicks(1, 0ms));
    const auto sample = tickSample();
    std::size_t lastFrame = sample.size();
    while (sample[lastFrame - 1] == 0) {
        --lastFrame;
    }
    // Its rest may have gone out already when the system was busy: then once more.
    bool isCut = false;
    for (int attempt = 0; attempt < 20 && !isCut; ++attempt) {
        tick->play();
        recorder->recordUntil(Clock::now() + 5ms);
        tick->stop();
        ASSERT_NO_FATAL_FAILURE(recordToTheEnd());
        const auto begin = recorder->samples().begin() + static_cast<std::ptrdiff_t>(recorder->ticks().back());
        isCut = *(begin + static_cast<std::ptrdiff_t>(lastFrame - 1)) == 0;
    }
    EXPECT_TRUE(isCut);
}

TEST_F(PulseSoundsTest, ConnectsToNobodyBeforeTheFirstTick) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    tick->stop();
    EXPECT_TRUE(recorder->recordMore(framesIn(500)));
    EXPECT_FALSE(server.logHolds("Velloran"));
    ASSERT_NO_FATAL_FAILURE(playTicks(1, 0ms));
    EXPECT_TRUE(server.logHolds("Velloran"));
}

TEST_F(PulseSoundsTest, LetsGoOfTheServerWhenIdleAndComesBack) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(3, 200ms));
    EXPECT_FALSE(server.logHolds("Freed 1 \"Velloran\""));
    EXPECT_TRUE(recorder->recordMore(framesIn(4000)));
    EXPECT_TRUE(server.waitForLog("Freed 1 \"Velloran\""));
    ASSERT_NO_FATAL_FAILURE(playTicks(3, 200ms));
    EXPECT_EQ(recorder->ticks().size(), 6U) << distances(recorder->ticks());
}

TEST_F(PulseSoundsTest, IsSilentWithoutAServer) {
    for (int index = 0; index < 1000; ++index) {
        tick->stop();
        tick->play();
    }
    // A server that comes later is found.
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playUntilHeard());
}

TEST_F(PulseSoundsTest, DropsTicksUntilThereIsAThread) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    {
        const fakes::NoMoreThreads none;
        tick->play();
        tick->stop();
    }
    ASSERT_NO_FATAL_FAILURE(playTicks(1, 0ms));
    EXPECT_EQ(recorder->ticks().size(), 1U);
}

TEST_F(PulseSoundsTest, AServerThatDiesAndComesBackIsFoundAgain) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(5, 50ms));
    server.kill();
    recorder.reset();
    for (int index = 0; index < 100; ++index) {
        tick->stop();
        tick->play();
    }
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playUntilHeard());
}

TEST_F(PulseSoundsTest, AServerThatStandsStillHoldsNobodyUp) {
    ASSERT_NO_FATAL_FAILURE(startRecording());
    ASSERT_NO_FATAL_FAILURE(playTicks(5, 50ms));
    server.freeze();
    for (int index = 0; index < 1000; ++index) {
        tick->stop();
        tick->play();
    }
    server.thaw();
    ASSERT_NO_FATAL_FAILURE(recordToTheEnd());
    ASSERT_NO_FATAL_FAILURE(playUntilHeard());
}

TEST_F(PulseSoundsTest, EndsWhileAServerStandsStill) {
    ASSERT_TRUE(server.start());
    server.freeze();
    const Clock::time_point begin = Clock::now();
    {
        PulseSounds others;
        others.load("Tink")->play();
    }
    // Waiting for an answer would have taken half a minute.
    EXPECT_LT(Clock::now() - begin, 20s);
}

} // namespace velloran::platform::pulse
