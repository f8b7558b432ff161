#include "platform/bus/ScreenLock.h"

#include "harness/FakeLock.h"
#include "harness/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace velloran::tests {
namespace {

using platform::bus::BusState;
using platform::bus::ScreenLock;
using platform::bus::SessionBus;

class ScreenLockTest : public testing::Test {
protected:
    void follow() {
        lock.emplace(session, system);
        QObject::connect(&*lock, &ScreenLock::changed, &*lock, [this](bool isLocked) {
            EXPECT_EQ(isLocked, lock->isLocked());
            ++changes;
        });
    }

    [[nodiscard]] bool becomes(bool isLocked) const {
        return QTest::qWaitFor([&] { return lock->isLocked() == isLocked; }, 10000);
    }

    /// Waits until the desktop's screen saver was asked so often, and the answers have arrived.
    void expectAsked(const FakeLock& desktop, int times) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.asked >= times; }, 10000));
        // Answered behind the others, on the same connection.
        const QDBusPendingCall last = session.connection().asyncCall(QDBusMessage::createMethodCall(
            "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "GetActive"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return last.isFinished(); }, 10000));
    }

    PrivateBus sessionBus;
    PrivateBus systemBus;
    SessionBus session{{QByteArray::fromStdString(sessionBus.address()), BusState::answers}};
    SessionBus system{{QByteArray::fromStdString(systemBus.address()), BusState::answers}};
    std::optional<ScreenLock> lock;
    int changes = 0;
};

const auto gnome = QStringLiteral("org.gnome.ScreenSaver");
const auto common = QStringLiteral("org.freedesktop.ScreenSaver");
const auto login = QStringLiteral("org.freedesktop.login1");

TEST_F(ScreenLockTest, IsHeardFromTheDesktop) {
    for (const auto& [service, path] :
         {std::pair(gnome, "/org/gnome/ScreenSaver"), std::pair(common, "/org/freedesktop/ScreenSaver"),
          std::pair(common, "/ScreenSaver")}) {
        FakeLock fake(sessionBus.address(), service, path);
        follow();
        EXPECT_FALSE(lock->isLocked());
        fake.isLocked = true;
        fake.tell(service, "ActiveChanged", {true});
        EXPECT_TRUE(becomes(true)) << path;
        fake.isLocked = false;
        fake.tell(service, "ActiveChanged", {false});
        EXPECT_TRUE(becomes(false)) << path;
    }
}

TEST_F(ScreenLockTest, IsHeardFromAShellWithoutItsGoBetween) {
    FakeLock shell(sessionBus.address(), QStringLiteral("org.gnome.Shell.ScreenShield"), "/org/gnome/ScreenSaver");
    follow();
    shell.isLocked = true;
    shell.tell(gnome, "ActiveChanged", {true});
    // At the beginning, and to confirm it.
    ASSERT_NO_FATAL_FAILURE(expectAsked(shell, 2));
    EXPECT_TRUE(lock->isLocked());
    shell.isLocked = false;
    shell.tell(gnome, "ActiveChanged", {false});
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes, 2);
}

TEST_F(ScreenLockTest, IsHeardFromTheLoginManager) {
    FakeLock fake(systemBus.address(), login, "/org/freedesktop/login1/session/_31");
    follow();
    const QVariantList change{"org.freedesktop.login1.Session", QVariantMap(), QStringList("LockedHint")};
    fake.isLocked = true;
    fake.tell("org.freedesktop.DBus.Properties", "PropertiesChanged", change);
    EXPECT_TRUE(becomes(true));
    fake.isLocked = false;
    fake.tell("org.freedesktop.DBus.Properties", "PropertiesChanged", change);
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes, 2);
}

TEST_F(ScreenLockTest, ScreenThatIsLockedAlreadyIsFound) {
    FakeLock fake(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    fake.isLocked = true;
    follow();
    EXPECT_TRUE(becomes(true));
}

TEST_F(ScreenLockTest, IsLockedWhileAnybodySaysSo) {
    FakeLock desktop(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    FakeLock manager(systemBus.address(), login, "/org/freedesktop/login1/session/_31");
    manager.isLocked = true;
    follow();
    ASSERT_TRUE(becomes(true));
    desktop.isLocked = true;
    desktop.tell(gnome, "ActiveChanged", {true});
    ASSERT_NO_FATAL_FAILURE(expectAsked(desktop, 2));
    desktop.isLocked = false;
    desktop.tell(gnome, "ActiveChanged", {false});
    ASSERT_NO_FATAL_FAILURE(expectAsked(desktop, 4));
    EXPECT_TRUE(lock->isLocked());
    manager.isLocked = false;
    manager.tell("org.freedesktop.DBus.Properties", "PropertiesChanged",
                 {"org.freedesktop.login1.Session", QVariantMap(), QStringList("LockedHint")});
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes, 2);
}

TEST_F(ScreenLockTest, ADesktopWhoseBusHasGoneLocksNothing) {
    FakeLock desktop(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    desktop.isLocked = true;
    follow();
    ASSERT_TRUE(becomes(true));
    sessionBus.end();
    EXPECT_TRUE(becomes(false));
}

TEST_F(ScreenLockTest, TheLoginManagerIsBelievedWithoutASessionBus) {
    FakeLock desktop(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    FakeLock manager(systemBus.address(), login, "/org/freedesktop/login1/session/_31");
    desktop.isLocked = true;
    manager.isLocked = true;
    follow();
    ASSERT_NO_FATAL_FAILURE(expectAsked(desktop, 1));
    ASSERT_TRUE(QTest::qWaitFor([&] { return manager.asked >= 1; }, 10000));
    ASSERT_TRUE(becomes(true));
    bool isLost = false;
    QObject::connect(&session, &SessionBus::lost, &*lock, [&] { isLost = true; });
    sessionBus.end();
    ASSERT_TRUE(QTest::qWaitFor([&] { return isLost; }, 10000));
    EXPECT_TRUE(lock->isLocked());
    manager.isLocked = false;
    manager.tell("org.freedesktop.DBus.Properties", "PropertiesChanged",
                 {"org.freedesktop.login1.Session", QVariantMap(), QStringList("LockedHint")});
    EXPECT_TRUE(becomes(false));
}

TEST_F(ScreenLockTest, NobodyElseCanUnlock) {
    FakeLock fake(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    fake.isLocked = true;
    follow();
    ASSERT_TRUE(becomes(true));
    FakeLock other(sessionBus.address(), "org.example.Other", "/org/gnome/ScreenSaver");
    other.tell(gnome, "ActiveChanged", {false});
    ASSERT_NO_FATAL_FAILURE(expectAsked(fake, 2));
    EXPECT_TRUE(lock->isLocked());
    EXPECT_EQ(changes, 1);
}

TEST_F(ScreenLockTest, WhatComesInOtherTypesIsNotHeard) {
    FakeLock fake(sessionBus.address(), gnome, "/org/gnome/ScreenSaver");
    follow();
    fake.tell(gnome, "ActiveChanged", {QStringList{"locked"}});
    fake.tell(gnome, "ActiveChanged", {QVariantMap{{"locked", true}}});
    fake.tell(gnome, "ActiveChanged", {});
    fake.isLocked = true;
    fake.tell(gnome, "ActiveChanged", {true});
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace velloran::tests
