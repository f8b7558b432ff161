#include "platform/bus/SessionBus.h"

#include "harness/PrivateBus.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace velloran::tests {
namespace {

using platform::bus::BusState;
using platform::bus::SessionBus;

constexpr int patience = 20'000; // milliseconds

class SessionBusTest : public testing::Test {
protected:
    [[nodiscard]] QByteArray address() const { return QByteArray::fromStdString(bus.address()); }

    PrivateBus bus;
};

TEST_F(SessionBusTest, IsConnectedAtOnce) {
    const SessionBus session({address(), BusState::answers});
    EXPECT_TRUE(session.connection().isConnected());
}

TEST_F(SessionBusTest, OneThatIsAbsentAtTheStartIsTakenWhenItComes) {
    bus.end();
    const SessionBus session({address(), BusState::absent});
    EXPECT_FALSE(session.connection().isConnected());
    QSignalSpy connected(&session, &SessionBus::connected);
    bus.start();
    ASSERT_TRUE(connected.wait(patience));
    EXPECT_TRUE(session.connection().isConnected());
}

TEST_F(SessionBusTest, OneThatGoesIsToldOfOnceAndTakenWhenItComesBack) {
    const SessionBus session({address(), BusState::answers});
    QSignalSpy lost(&session, &SessionBus::lost);
    QSignalSpy connected(&session, &SessionBus::connected);
    bus.end();
    ASSERT_TRUE(lost.wait(patience));
    EXPECT_FALSE(session.connection().isConnected());
    bus.start();
    ASSERT_TRUE(connected.wait(patience));
    EXPECT_TRUE(session.connection().isConnected());
    EXPECT_EQ(lost.count(), 1);
}

TEST_F(SessionBusTest, CanBeMadeWithoutWaiting) {
    bus.holdStill();
    const SessionBus session({address(), BusState::answers}, SessionBus::Start::inBackground);
    bus.goOn();
    EXPECT_FALSE(session.connection().isConnected());
    QSignalSpy connected(&session, &SessionBus::connected);
    ASSERT_TRUE(connected.wait(patience));
    EXPECT_TRUE(session.connection().isConnected());
}

TEST_F(SessionBusTest, TwoOfThemDoNotMix) {
    const SessionBus one({address(), BusState::answers});
    {
        const SessionBus other({address(), BusState::answers});
        EXPECT_NE(one.connection().baseService(), other.connection().baseService());
    }
    EXPECT_TRUE(one.connection().isConnected());
}

} // namespace
} // namespace velloran::tests
