#include "platform/pulse/Recorder.h"

#include "platform/pulse/TickSample.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace velloran::tests {

namespace {

using namespace std::chrono_literals;

constexpr auto longestSilence = 30s;
constexpr std::size_t recognised = platform::pulse::tickRate * 5 / 1000;

} // namespace

bool Recorder::start() {
    return recordMore(platform::pulse::tickRate / 4);
}

void Recorder::recordUntil(std::chrono::steady_clock::time_point moment) {
    for (auto now = std::chrono::steady_clock::now(); now < moment; now = std::chrono::steady_clock::now()) {
        take(moment - now);
    }
}

bool Recorder::recordMore(std::size_t frames) {
    const std::size_t wanted = samples_.size() + frames;
    while (samples_.size() < wanted) {
        if (!take(longestSilence)) {
            return false;
        }
    }
    return true;
}

std::vector<std::size_t> Recorder::ticks() const {
    const auto tick = platform::pulse::tickSample().first(recognised);
    std::vector<std::size_t> found;
    auto from = samples_.begin();
    while (true) {
        from = std::search(from, samples_.end(), tick.begin(), tick.end());
        if (from == samples_.end()) {
            return found;
        }
        found.push_back(static_cast<std::size_t>(from - samples_.begin()));
        ++from;
    }
}

bool Recorder::take(std::chrono::nanoseconds longest) {
    pollfd wait{pipe_, POLLIN, 0};
    const timespec limit{longest / 1s, (longest % 1s).count()};
    if (ppoll(&wait, 1, &limit, nullptr) <= 0) {
        return false;
    }
    std::array<std::int16_t, 4096> buffer{};
    const ssize_t size = read(pipe_, buffer.data(), sizeof buffer);
    if (size <= 0) {
        // The recording program is gone; from now on waiting is all there is to do.
        pipe_ = -1;
        return false;
    }
    // parec writes whole frames of two bytes, and a pipe keeps small pieces whole.
    samples_.insert(samples_.end(), buffer.begin(),
                    buffer.begin() + size / static_cast<ssize_t>(sizeof buffer.front()));
    return true;
}

} // namespace velloran::tests
