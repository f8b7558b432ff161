#pragma once

#include <cstdint>

namespace velloran::tests {

/// A program that has this takes its memory here, so that a test can have the system refuse some of it. One at a time,
/// on one thread.
class RefusedMemory {
public:
    enum class Manner {
        /// That one only: a piece too large, while others are to be had.
        once,
        /// That one and all behind it: there is no memory any more.
        fromThenOn,
    };

    /// From now on the piece of memory with that number, counted from 1, is refused.
    RefusedMemory(std::int64_t number, Manner manner);
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
    /// Everything is granted again.
    ~RefusedMemory();

    /// Everything is granted from now on.
    static void end();

    /// Whether anything was refused.
    [[nodiscard]] static bool hasRefused();

    /// How many pieces this program holds.
    [[nodiscard]] static std::int64_t held();
};

} // namespace velloran::tests
