#include "platform/qt/QuietMoment.h"

#include <QCoreApplication>
#include <QEvent>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>

namespace velloran::platform::qt {

namespace {

using Clock = std::chrono::steady_clock;

/// How often the calling thread has waited for something until now.
long waits() {
    rusage usage{};
    EXPECT_EQ(getrusage(RUSAGE_THREAD, &usage), 0);
    return usage.ru_nvcsw;
}

/// Writes down when the last event came to it, and whether the thread had waited before.
class Receiver final : public QObject {
public:
    Moment came = Moment::min();

    /// Delivers it at once. Returns whether that was held back.
    bool isHeldBack(QEvent::Type type) {
        QEvent event(type);
        const long before = waits();
        QCoreApplication::sendEvent(this, &event);
        return waits() > before;
    }

protected:
    bool event(QEvent* /*event*/) override {
        came = Clock::now();
        return true;
    }
};

class QuietMomentTest : public testing::Test {
protected:
    /// So near that the least picture would run into it.
    static Moment soon() { return Clock::now() + std::chrono::microseconds(500); }

    QuietMoment quiet;
    Receiver receiver;
};

} // namespace

TEST_F(QuietMomentTest, NothingIsHeldBackWhereThereIsNone) {
    EXPECT_FALSE(receiver.isHeldBack(QEvent::Timer));
}

TEST_F(QuietMomentTest, TimersAndPicturesComeBehindIt) {
    for (const QEvent::Type type : {QEvent::Timer, QEvent::UpdateRequest}) {
        const Moment moment = soon();
        quiet.set(moment);
        receiver.isHeldBack(type);
        EXPECT_GT(receiver.came, moment + std::chrono::microseconds(500)) << type;
    }
}

TEST_F(QuietMomentTest, OneThatHasJustBeenIsStillKept) {
    const Moment moment = Clock::now();
    quiet.set(moment);
    receiver.isHeldBack(QEvent::Timer);
    EXPECT_GT(receiver.came, moment + std::chrono::microseconds(500));
}

TEST_F(QuietMomentTest, WhatTheUserDoesIsNotHeldBack) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::User}) {
        quiet.set(soon());
        EXPECT_FALSE(receiver.isHeldBack(type)) << type;
    }
}

TEST_F(QuietMomentTest, OneFarAwayHoldsNothingBack) {
    quiet.set(Clock::now() + std::chrono::hours(1));
    EXPECT_FALSE(receiver.isHeldBack(QEvent::Timer));
    quiet.set(Clock::now() - std::chrono::hours(1));
    EXPECT_FALSE(receiver.isHeldBack(QEvent::Timer));
    quiet.set(Moment::max());
    EXPECT_FALSE(receiver.isHeldBack(QEvent::Timer));
}

TEST_F(QuietMomentTest, OneHoldsBackOnce) {
    const Moment moment = soon();
    quiet.set(moment);
    receiver.isHeldBack(QEvent::Timer);
    EXPECT_FALSE(receiver.isHeldBack(QEvent::Timer));
}

} // namespace velloran::platform::qt
