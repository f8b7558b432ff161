#include "platform/portal/PortalDesktop.h"

#include "harness/FakeLock.h"
#include "harness/FakePortal.h"
#include "harness/PrivateBus.h"
#include "platform/HotKeys.h"
#include "platform/qt/QtEventLoop.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace velloran::tests {
namespace {

using platform::PromptReason;
using platform::bus::BusState;
using platform::portal::PortalDesktop;

class PortalDesktopTest : public testing::Test {
protected:
    PortalDesktopTest() {
        setenv("XDG_DATA_HOME", folder.path().toUtf8(), 1);
        setenv("XDG_DATA_DIRS", "/nowhere", 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus.address().c_str(), 1);
        fake = std::make_unique<FakePortal>(bus.address());
        fake->version = 2;
        desktop = std::make_unique<PortalDesktop>(
            loop, platform::bus::BusPlace{QByteArray::fromStdString(bus.address()), BusState::answers},
            QStringLiteral("org.example.Program"), QStringLiteral("/bin/true"), nullptr);
    }

    ~PortalDesktopTest() override {
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_DATA_DIRS");
        unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }

    PortalDesktopTest(const PortalDesktopTest&) = delete;
    PortalDesktopTest& operator=(const PortalDesktopTest&) = delete;

    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 10'000);
    }

    [[nodiscard]] platform::InputTrust* trust() const { return desktop->parts().get().trust.part.get(); }

    /// Grants whatever is asked.
    void open() {
        ASSERT_TRUE(until([this] { return trust() != nullptr; }));
        trust()->requestPrompt(PromptReason::askedFor);
        for (const auto* const method : {"CreateSession", "SelectDevices", "Start"}) {
            ASSERT_TRUE(until([&] { return fake->request.method == method; })) << method;
            fake->respond(0, {{"devices", 2U}, {"restore_token", "word"}});
        }
        ASSERT_TRUE(until([this] { return trust()->isTrusted(); }));
    }

    [[nodiscard]] std::string file(const char* name) const { return folder.filePath(name).toStdString(); }

    QTemporaryDir folder;
    PrivateBus bus;
    PrivateBus systemBus;
    platform::qt::QtEventLoop loop;
    std::unique_ptr<FakePortal> fake;
    std::unique_ptr<PortalDesktop> desktop;
};

TEST_F(PortalDesktopTest, IntroducesTheProgramBeforeAnythingElse) {
    EXPECT_TRUE(std::filesystem::exists(file("applications/org.example.Program.desktop")));
    ASSERT_TRUE(until([this] { return trust() != nullptr; }));
    EXPECT_EQ(fake->calls.value(0), "Register");
    EXPECT_EQ(fake->names, QStringList("org.example.Program"));
    EXPECT_EQ(desktop->parts().get().clicks.limit, "");
}

TEST_F(PortalDesktopTest, HasTheHotkeyBesideTheClicks) {
    EXPECT_TRUE(desktop->parts().get().hotKeys.isAwaited);
    ASSERT_TRUE(until([this] { return desktop->parts().get().hotKeys.part && trust() != nullptr; }));
    EXPECT_NE(desktop->parts().get().clicks.part, nullptr);
    const Subscription hotkey = desktop->parts().get().hotKeys.part->registerHotKey(
        100, platform::controlModifier, {7, 1}, [](const platform::HotKeyAnswer&) {});
    EXPECT_TRUE(until([this] { return fake->request.method == "CreateSession"; }));
    fake->vanish();
    ASSERT_TRUE(until([this] { return desktop->parts().get().hotKeys.part == nullptr && trust() == nullptr; }));
}

TEST_F(PortalDesktopTest, KeepsThePermissionBesideTheUsersOtherData) {
    ASSERT_NO_FATAL_FAILURE(open());
    desktop.reset();
    EXPECT_TRUE(std::filesystem::exists(file("velloran/remote-desktop-token")));
}

TEST_F(PortalDesktopTest, LockedScreenTakesThePermission) {
    ASSERT_NO_FATAL_FAILURE(open());
    FakeLock lock(bus.address(), "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver");
    lock.isLocked = true;
    lock.tell("org.gnome.ScreenSaver", "ActiveChanged", {true});
    EXPECT_TRUE(until([this] { return !trust()->isTrusted(); }));
}

TEST_F(PortalDesktopTest, LoginManagerTellsOfTheLockToo) {
    FakeLock lock(systemBus.address(), "org.freedesktop.login1", "/org/freedesktop/login1/session/_31");
    ASSERT_NO_FATAL_FAILURE(open());
    lock.isLocked = true;
    // It may take until it is listened to.
    EXPECT_TRUE(until([&] {
        lock.tell("org.freedesktop.DBus.Properties", "PropertiesChanged",
                  {"org.freedesktop.login1.Session", QVariantMap(), QStringList("LockedHint")});
        return !trust()->isTrusted();
    }));
}

} // namespace
} // namespace velloran::tests
