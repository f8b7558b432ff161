#pragma once

#include "base/fatal.h"
#include "harness/ChildProcess.h"
#include "harness/FakeBackEnd.h"
#include "harness/PrivateBus.h"
#include "platform/bus/SessionBus.h"
#include "platform/portal/Portal.h"
#include "platform/portal/desktopEntry.h"
#include "platform/qt/QtEventLoop.h"

#include <QDBusConnectionInterface>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace velloran::tests {

/// Folders of the test's own, in the environment of all that is started.
class PortalHome {
public:
    PortalHome() {
        for (const char* const name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "HOME"}) {
            const std::string path = folder_.filePath(name).toStdString();
            std::filesystem::create_directories(path);
            std::filesystem::permissions(path, std::filesystem::perms::owner_all);
            setenv(name, path.c_str(), 1);
        }
        setenv("XDG_CURRENT_DESKTOP", "velloran", 1);
        const std::string portals = folder_.filePath("portals").toStdString();
        std::filesystem::create_directories(portals);
        std::ofstream(portals + "/velloran.portal")
            << "[portal]\nDBusName=" << FakeBackEnd::name
            << "\nInterfaces=org.freedesktop.impl.portal.RemoteDesktop;org.freedesktop.impl.portal.GlobalShortcuts;\n"
               "UseIn=velloran\n";
        setenv("XDG_DESKTOP_PORTAL_DIR", portals.c_str(), 1);
        const std::string settings = folder_.filePath("XDG_CONFIG_HOME/xdg-desktop-portal").toStdString();
        std::filesystem::create_directories(settings);
        std::ofstream(settings + "/portals.conf")
            << "[preferred]\ndefault=none\norg.freedesktop.impl.portal.RemoteDesktop=velloran\n"
               "org.freedesktop.impl.portal.GlobalShortcuts=velloran\n";
        platform::portal::provideDesktopEntry(QStringLiteral("app.velloran.Velloran"), QStringLiteral("/bin/true"));
    }

    [[nodiscard]] std::string path(const char* name) const { return folder_.filePath(name).toStdString(); }

private:
    QTemporaryDir folder_;
};

/// The desktop's real portal on a bus of the test's own, with a back end that stands for the desktop.
class RealPortalBench : public testing::Test {
protected:
    RealPortalBench() {
        setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
        store.emplace(std::vector{libexec("xdg-permission-store")});
        EXPECT_TRUE(until([this] { return hasOwner("org.freedesktop.impl.portal.PermissionStore"); }));
        backEnd.emplace(bus.address());
        startPortal();
    }

    ~RealPortalBench() override { unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    RealPortalBench(const RealPortalBench&) = delete;
    RealPortalBench& operator=(const RealPortalBench&) = delete;

    static std::string libexec(const std::string& program) {
        const std::string path = "/usr/libexec/" + program;
        if (!std::filesystem::exists(path)) {
            fatalError("The portal is not installed");
        }
        return path;
    }

    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 20'000);
    }

    [[nodiscard]] bool hasOwner(const char* name) {
        return watcher.connection().interface()->isServiceRegistered(name).value();
    }

    void startPortal() { front.emplace(std::vector{libexec("xdg-desktop-portal")}); }

    void killPortal() {
        front->sendSignal(SIGKILL);
        front.reset();
    }

    /// Connects as a start of the program does.
    void connect() {
        portal.reset();
        session.emplace(
            platform::bus::BusPlace{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers});
        portal.emplace(*session, QStringLiteral("app.velloran.Velloran"));
    }

    const PortalHome home;
    PrivateBus bus;
    platform::bus::SessionBus watcher{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    platform::qt::QtEventLoop loop;
    std::optional<ChildProcess> store;
    std::optional<FakeBackEnd> backEnd;
    std::optional<ChildProcess> front;
    std::optional<platform::bus::SessionBus> session;
    std::optional<platform::portal::Portal> portal;
};

} // namespace velloran::tests
