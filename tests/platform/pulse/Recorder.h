#pragma once

#include "harness/ChildProcess.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace velloran::tests {

/// Records what the device of a `SoundServer` would have played.
class Recorder {
public:
    /// Records until a quarter of a second of sound (mostly silence) has come in. False when none comes.
    bool start();

    /// Records what comes in until that moment.
    void recordUntil(std::chrono::steady_clock::time_point moment);

    /// Records that many further frames. False when they do not come.
    bool recordMore(std::size_t frames);

    [[nodiscard]] const std::vector<std::int16_t>& samples() const { return samples_; }

    /// Where ticks begin, frame by frame. A tick counts when its first five milliseconds are there sample by sample.
    [[nodiscard]] std::vector<std::size_t> ticks() const;

private:
    /// Waits for sound for that long at most and takes what is there.
    bool take(std::chrono::nanoseconds longest);

    ChildProcess process_{{"parec", "--raw", "--device=test.monitor", "--format=s16le", "--rate=48000", "--channels=1",
                           "--latency-msec=10"}};
    int pipe_ = process_.output();
    std::vector<std::int16_t> samples_;
};

} // namespace velloran::tests
