#pragma once

#include "platform/pulse/TickPlacement.h"

#include <pulse/context.h>
#include <pulse/mainloop-api.h>
#include <pulse/stream.h>

#include <cstdint>
#include <deque>

namespace velloran::platform::pulse {

/// One connection to the sound server, with one stream on it. Connecting starts at once and starts no server. Ticks
/// asked for before the stream runs are kept until it does. All on the thread of the sound server's main loop; never
/// waits.
class TickConnection {
public:
    enum class State {
        inUse,
        /// No tick for some seconds: may be given up.
        idle,
        /// There is no server, or it has gone.
        lost,
    };

    explicit TickConnection(pa_mainloop_api& api);
    TickConnection(const TickConnection&) = delete;
    TickConnection& operator=(const TickConnection&) = delete;
    /// What is still playing is cut.
    ~TickConnection();

    [[nodiscard]] State state() const { return state_; }

    /// Plays the tick that was asked for at `moment` (nanoseconds on the monotonic clock), cutting the one before.
    void tick(std::int64_t moment);

    /// Ends the tick under way.
    void stop(std::int64_t moment);

private:
    void onContextState();
    void onStreamState();
    void onSuspended();
    void onReport();
    void onIdle();
    void openStream();
    void write(const std::int16_t* samples, std::int64_t begin, std::int64_t end);
    void playPending();

    pa_mainloop_api& api_;
    State state_ = State::inUse;
    pa_context* context_ = nullptr;
    pa_stream* stream_ = nullptr;
    pa_time_event* idleTimer_ = nullptr;
    TickPlacement placement_;
    /// Moments of ticks that wait for the stream to run.
    std::deque<std::int64_t> pending_;
    /// Whether the stream moves on, as far as the server has told.
    bool isRunning_ = false;
    /// When the server last told of the stream.
    std::int64_t lastReport_ = 0;
};

} // namespace velloran::platform::pulse
