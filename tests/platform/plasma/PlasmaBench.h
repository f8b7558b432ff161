#pragma once

#include "fakes/VirtualLoop.h"
#include "harness/PrivateBus.h"
#include "keys/KeyboardLayout.h"
#include "platform/bus/SessionBus.h"
#include "platform/plasma/FakePlasma.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace velloran::tests {

/// A bus, this program's connection to it and, when a test has them come, services of Plasma's.
class PlasmaBench : public testing::Test {
protected:
    /// Lets things happen until the condition holds; false when it does not within ten seconds.
    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 10000);
    }

    /// Lets everything arrive that the service was sent, and all that it sends for that. A call takes one way, and what
    /// is asked because of the answer another.
    void settle(FakeService& service) {
        for (int ways = 0; ways < 6; ++ways) {
            service.bus().call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                              "org.freedesktop.DBus", "GetId"));
            bool isAnswered = false;
            QDBusPendingCallWatcher watcher(session.connection().asyncCall(QDBusMessage::createMethodCall(
                "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId")));
            QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, [&] { isAnswered = true; });
            ASSERT_TRUE(until([&] { return isAnswered; }));
            QCoreApplication::processEvents();
        }
    }

    static keys::KeyboardLayout layoutCalled(const std::string& name) {
        return keys::KeyboardLayout::fromNames({"evdev", "pc105", name, "", ""}).value();
    }

    PrivateBus bus;
    platform::bus::SessionBus session{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    fakes::VirtualLoop loop;
};

} // namespace velloran::tests
