#include "platform/pulse/TickPlayer.h"

#include "async/startThread.h"
#include "platform/pulse/monotonicNow.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

namespace velloran::platform::pulse {

namespace {

/// Between two attempts to reach a server, in nanoseconds.
constexpr std::int64_t timeBetweenAttempts = 1'000'000'000;

/// More than ever gather while the thread does its work.
constexpr std::size_t mostCommands = 256;

} // namespace

TickPlayer::TickPlayer() : loop_(pa_mainloop_new()), wakeUp_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (loop_ != nullptr && wakeUp_ >= 0) {
        pa_mainloop_api* const api = pa_mainloop_get_api(loop_);
        // The loop's own wake-up is no good here: one that comes while the loop is not waiting is forgotten.
        wakeUpEvent_ = api->io_new(
            api, wakeUp_, PA_IO_EVENT_INPUT,
            [](pa_mainloop_api*, pa_io_event*, int descriptor, pa_io_event_flags_t, void*) {
                eventfd_t count = 0;
                eventfd_read(descriptor, &count);
            },
            nullptr);
    }
}

TickPlayer::~TickPlayer() {
    if (thread_.joinable()) {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        eventfd_write(wakeUp_, 1);
        thread_.join();
    }
    if (wakeUpEvent_ != nullptr) {
        pa_mainloop_get_api(loop_)->io_free(wakeUpEvent_);
    }
    if (loop_ != nullptr) {
        pa_mainloop_free(loop_);
    }
    if (wakeUp_ >= 0) {
        close(wakeUp_);
    }
}

void TickPlayer::play() {
    if (wakeUpEvent_ == nullptr) {
        return;
    }
    if (!thread_.joinable()) {
        thread_ = startThread("velloran.sound", [this] { work(); });
    }
    // Without a thread ticks are dropped as they are without a server.
    if (thread_.joinable()) {
        give(Action::play);
    }
}

void TickPlayer::stop() {
    if (thread_.joinable()) {
        give(Action::stop);
    }
}

void TickPlayer::give(Action action) {
    {
        const std::lock_guard lock(mutex_);
        if (commands_.size() >= mostCommands) {
            return;
        }
        commands_.push_back({action, monotonicNow()});
    }
    eventfd_write(wakeUp_, 1);
}

void TickPlayer::work() {
    std::vector<Command> commands;
    while (pa_mainloop_iterate(loop_, 1, nullptr) >= 0) {
        {
            const std::lock_guard lock(mutex_);
            if (isEnding_) {
                break;
            }
            commands.swap(commands_);
        }
        for (const Command& command : commands) {
            obey(command);
        }
        commands.clear();
        tidyUp();
    }
    connection_.reset();
}

void TickPlayer::obey(const Command& command) {
    tidyUp();
    if (command.action == Action::stop) {
        if (connection_) {
            connection_->stop(command.moment);
        }
        return;
    }
    if (!connection_ && command.moment >= nextAttempt_) {
        connection_.emplace(*pa_mainloop_get_api(loop_));
    }
    if (connection_) {
        connection_->tick(command.moment);
    }
}

void TickPlayer::tidyUp() {
    if (!connection_ || connection_->state() == TickConnection::State::inUse) {
        return;
    }
    if (connection_->state() == TickConnection::State::lost) {
        nextAttempt_ = monotonicNow() + timeBetweenAttempts;
    }
    connection_.reset();
}

} // namespace velloran::platform::pulse
