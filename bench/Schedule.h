#pragma once

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <optional>

namespace velloran::bench {

/// So many deeds, each at a deadline of its own on the monotonic clock: what the floor of the cadence goes by.
class Schedule {
public:
    /// From a program's arguments, COUNT and SECONDS; nothing where they are others.
    static std::optional<Schedule> read(int argc, char** argv) {
        Schedule schedule;
        double seconds = 0.0;
        if (argc != 3 || !readNumber(argv[1], schedule.count_) || !readNumber(argv[2], seconds)) {
            return std::nullopt;
        }
        schedule.interval_ = static_cast<std::int64_t>(std::llround(seconds * nanosecondsPerSecond));
        return schedule;
    }

    /// The first at once.
    template<typename Deed>
    void run(const Deed& deed) const {
        timespec deadline{};
        clock_gettime(CLOCK_MONOTONIC, &deadline);
        for (std::int64_t i = 0; i < count_; ++i) {
            while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
            }
            deed();
            const std::int64_t next = deadline.tv_nsec + interval_;
            deadline.tv_sec += next / nanosecondsPerSecond;
            deadline.tv_nsec = next % nanosecondsPerSecond;
        }
    }

private:
    static constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

    template<typename T>
    static bool readNumber(const char* text, T& number) {
        const char* const end = text + std::strlen(text);
        return std::from_chars(text, end, number).ptr == end;
    }

    std::int64_t count_ = 0;
    std::int64_t interval_ = 0;
};

} // namespace velloran::bench
