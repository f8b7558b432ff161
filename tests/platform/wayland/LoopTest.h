#pragma once

#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

namespace velloran::tests {

/// A fixture with a real loop.
class LoopTest : public testing::Test {
protected:
    static constexpr double patience = 10.0;

    /// Runs the loop until the condition holds; false when it does not within that many seconds. The condition may ask
    /// others: it is tried again every few milliseconds.
    bool until(const std::function<bool()>& condition, double atMost = patience) {
        bool isTooLate = false;
        const ScheduledCall limit(loop, loop.callAfter(nanoseconds(atMost), [&isTooLate] { isTooLate = true; }));
        while (!condition()) {
            if (isTooLate) {
                return false;
            }
            const ScheduledCall again(loop, loop.callAfter(nanoseconds(0.003), [] {}));
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    /// Lets the loop go round until nothing is left to be told.
    void idle() {
        int turnsTaken = 0;
        const std::function<void()> turn = [&] {
            if (++turnsTaken < 10) {
                loop.post(turn);
            }
        };
        loop.post(turn);
        ASSERT_TRUE(until([&turnsTaken] { return turnsTaken == 10; }));
    }

    /// How often the loop wakes up in that time, in seconds, if nothing happens.
    int turnsDuring(double seconds) {
        bool isOver = false;
        const ScheduledCall end(loop, loop.callAfter(nanoseconds(seconds), [&isOver] { isOver = true; }));
        int turns = 0;
        while (!isOver) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            ++turns;
        }
        return turns;
    }

    /// Whether others wake the loop up that often; false when they do not within the usual patience.
    bool untilWokenUp(int times) {
        bool isTooLate = false;
        const ScheduledCall limit(loop, loop.callAfter(nanoseconds(patience), [&isTooLate] { isTooLate = true; }));
        for (int turns = 0; turns < times && !isTooLate; ++turns) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return !isTooLate;
    }

    static std::uint64_t nanoseconds(double seconds) {
        return static_cast<std::uint64_t>(seconds * static_cast<double>(nanosecondsPerSecond));
    }

    platform::qt::QtEventLoop loop;
};

} // namespace velloran::tests
