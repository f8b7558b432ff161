#pragma once

#include "harness/FakePortal.h"
#include "harness/PrivateBus.h"
#include "platform/bus/SessionBus.h"
#include "platform/portal/Portal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace velloran::tests {

/// A bus, this program's connection to it and, when a test has it come, a portal.
class PortalBench : public testing::Test {
protected:
    /// Lets things happen until the condition holds; false when it does not within ten seconds.
    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 10000);
    }

    /// Has the portal come, and waits until that is known.
    void bringPortal(SettingGroups settings = {}, FakePortal::Manner manner = FakePortal::Manner::answers) {
        fake.emplace(bus.address(), std::move(settings), manner);
        ASSERT_TRUE(until([this] { return portal.isThere(); }));
    }

    /// Lets everything arrive that is on its way: what was sent before this comes before its answer.
    void settle() {
        bool isAnswered = false;
        QObject context;
        portal.call({"org.freedesktop.DBus.Peer", "Ping"}, &context, [&](const QDBusMessage&) { isAnswered = true; });
        ASSERT_TRUE(until([&] { return isAnswered; }));
    }

    /// Has another program on the bus send the message, and lets it arrive.
    void sendFromElsewhere(const QDBusMessage& message) {
        QDBusConnection other = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "other");
        ASSERT_TRUE(other.send(message));
        // The bus has passed it on before it answers this.
        other.call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                  "org.freedesktop.DBus", "GetId"));
        settle();
        QDBusConnection::disconnectFromBus("other");
    }

    PrivateBus bus;
    platform::bus::SessionBus session{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    platform::portal::Portal portal{session};
    std::optional<FakePortal> fake;
};

} // namespace velloran::tests
