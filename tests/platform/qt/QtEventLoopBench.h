#pragma once

#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velloran::platform::qt {

inline constexpr std::uint64_t millisecond = 1'000'000;

/// Lets the toolkit's loop turn, without a limit, until something has happened.
inline void turnUntil(const std::function<bool()>& hasHappened) {
    while (!hasHappened()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// A loop, and what was called on it.
class QtEventLoopTest : public testing::Test {
protected:
    /// A function that writes down that it was called.
    EventLoop::Function note(const std::string& name) {
        return [this, name] { journal.push_back(name); };
    }

    void turnUntilCalls(std::size_t count) {
        turnUntil([this, count] { return journal.size() >= count; });
    }

    /// Lets the loop turn until everything that is due has been called: something posted and something timed come after
    /// it.
    void turnUntilQuiet() {
        bool isPostedCalled = false;
        bool isTimedCalled = false;
        loop.post([&] { isPostedCalled = true; });
        loop.callAfter(0, [&] { isTimedCalled = true; });
        turnUntil([&] { return isPostedCalled && isTimedCalled; });
    }

    std::vector<std::string> journal;
    QtEventLoop loop;
};

using Journal = std::vector<std::string>;

} // namespace velloran::platform::qt
