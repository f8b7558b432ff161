#pragma once

#include "platform/pulse/TickConnection.h"

#include <pulse/mainloop.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace velloran::platform::pulse {

/// Plays ticks on a thread of its own, which starts with the first tick and sleeps while there are none. Connects to
/// the sound server when a tick comes and lets go of it some seconds after the last one. Without a server ticks are
/// dropped, and no more than one connection a second is tried. `play` and `stop` never wait for the server; they are
/// called on one thread.
class TickPlayer {
public:
    TickPlayer();
    TickPlayer(const TickPlayer&) = delete;
    TickPlayer& operator=(const TickPlayer&) = delete;
    ~TickPlayer();

    /// Plays the tick from its start; one that is still playing is cut.
    void play();

    /// Ends the tick that is playing, if one is.
    void stop();

private:
    enum class Action { play, stop };

    struct Command {
        Action action;
        /// When it was given, in nanoseconds on the monotonic clock.
        std::int64_t moment;
    };

    void give(Action action);
    void work();
    void obey(const Command& command);
    void tidyUp();

    pa_mainloop* loop_;
    int wakeUp_;
    pa_io_event* wakeUpEvent_ = nullptr;
    std::thread thread_;

    std::mutex mutex_; // guards the two below
    std::vector<Command> commands_;
    bool isEnding_ = false;

    // Of the thread alone.
    std::optional<TickConnection> connection_;
    std::int64_t nextAttempt_ = 0;
};

} // namespace velloran::platform::pulse
