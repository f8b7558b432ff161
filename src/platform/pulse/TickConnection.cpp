#include "platform/pulse/TickConnection.h"

#include "platform/pulse/TickSample.h"
#include "platform/pulse/monotonicNow.h"

#include <pulse/operation.h>
#include <pulse/proplist.h>
#include <pulse/rtclock.h>
#include <pulse/timeval.h>

#include <vector>

namespace velloran::platform::pulse {

namespace {

constexpr pa_usec_t timeToIdle = 3 * PA_USEC_PER_SEC;

/// The server tells of the stream every one and a half seconds, if not more often.
constexpr std::int64_t longestSilenceOfServer = 5'000'000'000;

constexpr std::int64_t frameSize = sizeof(std::int16_t);

constexpr pa_sample_spec format{PA_SAMPLE_S16NE, tickRate, 1};

/// How much the server is to have in hand. A quarter of it goes towards the loudspeaker at a time: less would have the
/// server wake up too often and stumble on a busy machine, more would let the tick be heard noticeably after the click.
constexpr std::uint32_t bufferLength = tickRate * 60 / 1000 * frameSize;

std::int64_t frames(pa_usec_t microseconds) {
    return static_cast<std::int64_t>(microseconds) * tickRate / static_cast<std::int64_t>(PA_USEC_PER_SEC);
}

void release(pa_operation* operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

std::int64_t tickLength() {
    return static_cast<std::int64_t>(tickSample().size());
}

} // namespace

TickConnection::TickConnection(pa_mainloop_api& api) : api_(api), placement_(tickLength()) {
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "Velloran");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ID, "app.velloran.Velloran");
    pa_proplist_sets(properties, PA_PROP_APPLICATION_ICON_NAME, "app.velloran.Velloran");
    context_ = pa_context_new_with_proplist(&api_, nullptr, properties);
    pa_proplist_free(properties);
    if (context_ == nullptr) {
        state_ = State::lost;
        return;
    }
    pa_context_set_state_callback(
        context_, [](pa_context*, void* self) { static_cast<TickConnection*>(self)->onContextState(); }, this);
    if (pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        state_ = State::lost;
        return;
    }
    idleTimer_ = pa_context_rttime_new(
        context_, pa_rtclock_now() + timeToIdle,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
            static_cast<TickConnection*>(self)->onIdle();
        },
        this);
}

TickConnection::~TickConnection() {
    if (idleTimer_ != nullptr) {
        api_.time_free(idleTimer_);
    }
    if (stream_ != nullptr) {
        pa_stream_set_state_callback(stream_, nullptr, nullptr);
        pa_stream_set_latency_update_callback(stream_, nullptr, nullptr);
        pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
        pa_stream_disconnect(stream_);
        pa_stream_unref(stream_);
    }
    if (context_ != nullptr) {
        pa_context_set_state_callback(context_, nullptr, nullptr);
        pa_context_disconnect(context_);
        pa_context_unref(context_);
    }
}

void TickConnection::tick(std::int64_t moment) {
    if (state_ == State::lost) {
        return;
    }
    if (isRunning_ && monotonicNow() - lastReport_ > longestSilenceOfServer) {
        state_ = State::lost;
        return;
    }
    state_ = State::inUse;
    if (idleTimer_ != nullptr) {
        pa_context_rttime_restart(context_, idleTimer_, pa_rtclock_now() + timeToIdle);
    }
    // What is too old will not be played, so there is no use in keeping more and more of it.
    while (!pending_.empty() && moment - pending_.front() > TickPlacement::longestDelay) {
        pending_.pop_front();
    }
    pending_.push_back(moment);
    playPending();
}

void TickConnection::stop(std::int64_t moment) {
    if (state_ == State::lost || !isRunning_) {
        return;
    }
    if (const auto rest = placement_.restOfTick(moment, monotonicNow())) {
        const std::vector<std::int16_t> silence(static_cast<std::size_t>(rest->end - rest->begin));
        write(silence.data(), rest->begin, rest->end);
    }
}

void TickConnection::onContextState() {
    const pa_context_state_t state = pa_context_get_state(context_);
    if (state == PA_CONTEXT_READY) {
        openStream();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        state_ = State::lost;
    }
}

void TickConnection::openStream() {
    pa_proplist* const properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event");
    stream_ = pa_stream_new_with_proplist(context_, "Click", &format, nullptr, properties);
    pa_proplist_free(properties);
    if (stream_ == nullptr) {
        state_ = State::lost;
        return;
    }
    pa_stream_set_state_callback(
        stream_, [](pa_stream*, void* self) { static_cast<TickConnection*>(self)->onStreamState(); }, this);
    pa_stream_set_latency_update_callback(
        stream_, [](pa_stream*, void* self) { static_cast<TickConnection*>(self)->onReport(); }, this);
    pa_stream_set_suspended_callback(
        stream_, [](pa_stream*, void* self) { static_cast<TickConnection*>(self)->onSuspended(); }, this);
    constexpr auto serversChoice = static_cast<std::uint32_t>(-1);
    // Nothing to be filled before it plays: the stream runs on through the silence between the ticks.
    constexpr pa_buffer_attr buffer{serversChoice, bufferLength, 0, serversChoice, serversChoice};
    constexpr auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE);
    if (pa_stream_connect_playback(stream_, nullptr, &buffer, flags, nullptr, nullptr) < 0) {
        state_ = State::lost;
    }
}

void TickConnection::onStreamState() {
    const pa_stream_state_t state = pa_stream_get_state(stream_);
    if (state == PA_STREAM_READY) {
        release(pa_stream_update_timing_info(stream_, nullptr, nullptr));
    } else if (!PA_STREAM_IS_GOOD(state)) {
        state_ = State::lost;
    }
}

void TickConnection::onSuspended() {
    // It runs again when a report says so.
    if (pa_stream_is_suspended(stream_) != 0) {
        isRunning_ = false;
    }
}

void TickConnection::onReport() {
    const pa_timing_info* const info = pa_stream_get_timing_info(stream_);
    if (info == nullptr || info->read_index_corrupt != 0) {
        return;
    }
    lastReport_ = monotonicNow();
    isRunning_ = info->playing != 0;
    if (!isRunning_) {
        return;
    }
    // The report was under way for a while, in which the stream moved on.
    const std::int64_t waiting = info->read_index / frameSize + frames(info->transport_usec);
    const auto age = static_cast<std::int64_t>(info->transport_usec) * 1000;
    placement_.update({lastReport_, waiting - frames(info->sink_usec), waiting, age});
    playPending();
}

void TickConnection::onIdle() {
    if (state_ == State::inUse) {
        state_ = State::idle;
    }
}

void TickConnection::playPending() {
    if (!isRunning_) {
        return;
    }
    const std::int64_t now = monotonicNow();
    while (!pending_.empty()) {
        const auto begin = placement_.place(pending_.front(), now);
        pending_.pop_front();
        if (begin) {
            write(tickSample().data(), *begin, *begin + tickLength());
        }
    }
}

void TickConnection::write(const std::int16_t* samples, std::int64_t begin, std::int64_t end) {
    const auto size = static_cast<std::size_t>((end - begin) * frameSize);
    if (pa_stream_write(stream_, samples, size, nullptr, begin * frameSize, PA_SEEK_ABSOLUTE) < 0) {
        state_ = State::lost;
    }
}

} // namespace velloran::platform::pulse
