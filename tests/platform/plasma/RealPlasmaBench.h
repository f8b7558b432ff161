#pragma once

#include "fakes/VirtualLoop.h"
#include "harness/ChildProcess.h"
#include "harness/PrivateBus.h"
#include "keys/KeyboardLayout.h"
#include "platform/bus/SessionBus.h"
#include "platform/plasma/PlasmaHotKeys.h"
#include "platform/plasma/SignalCounter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

/// Services of Plasma's own on a bus and in folders of the test's own.
class RealPlasmaBench : public testing::Test {
protected:
    static constexpr platform::HotKeyId ourId{7, 1};

    /// One registration, and what it was told.
    struct Hotkey {
        std::vector<platform::HotKeyAnswer> answers;
        Subscription registered;

        [[nodiscard]] platform::HotKeyAnswer last() const {
            return answers.empty() ? platform::HotKeyAnswer{99, {}} : answers.back();
        }
    };

    ~RealPlasmaBench() override { QDBusConnection::disconnectFromBus("user"); }

    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 30'000);
    }

    static bool isInstalled(const std::string& program) {
        return runProgram({"sh", "-c", "command -v " + program + " >/dev/null"}) == 0;
    }

    std::string folder(const char* name) {
        const std::string path = home.filePath(name).toStdString();
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    /// The command, in the surroundings that it has on a desktop.
    std::vector<std::string> inSession(std::vector<std::string> command) {
        std::vector<std::string> whole{"env",
                                       "DBUS_SESSION_BUS_ADDRESS=" + bus.address(),
                                       "HOME=" + folder("home"),
                                       "XDG_CONFIG_HOME=" + folder("config"),
                                       "XDG_CACHE_HOME=" + folder("cache"),
                                       "XDG_DATA_HOME=" + folder("data"),
                                       "XDG_RUNTIME_DIR=" + folder("runtime"),
                                       "LC_ALL=C.UTF-8"};
        whole.insert(whole.end(), command.begin(), command.end());
        return whole;
    }

    QDBusMessage ask(const QString& service, const QString& path, const QString& interface, const QString& method,
                     const QVariantList& arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return user.call(message);
    }

    bool hasOwner(const QString& name) {
        return ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner", {name})
                   .arguments()
                   .value(0) == true;
    }

    [[nodiscard]] bool isOffered() const { return hotKeys->part().get().part != nullptr; }

    void want(Hotkey& hotkey, std::uint32_t key, std::uint32_t modifiers = platform::controlModifier) {
        hotkey.answers.clear();
        hotkey.registered.cancel();
        hotkey.registered =
            hotKeys->registerHotKey(key, modifiers, ourId, [&hotkey](const platform::HotKeyAnswer& answer) {
                hotkey.answers.push_back(answer);
            });
    }

    void bind(Hotkey& hotkey, std::uint32_t key, std::uint32_t modifiers = platform::controlModifier) {
        want(hotkey, key, modifiers);
        ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
        ASSERT_EQ(hotkey.last(), platform::HotKeyAnswer()) << hotkey.last().status << hotkey.last().holder;
    }

    /// How many shortcuts of whomever that key has.
    qsizetype holders(int key) {
        const auto answer =
            ask("org.kde.kglobalaccel", "/kglobalaccel", "org.kde.KGlobalAccel", "getGlobalShortcutsByKey", {key});
        const auto list = answer.arguments().value(0).value<QDBusArgument>();
        qsizetype count = 0;
        list.beginArray();
        while (!list.atEnd()) {
            list.beginStructure();
            list.endStructure();
            ++count;
        }
        return count;
    }

    PrivateBus bus;
    QTemporaryDir home;
    platform::bus::SessionBus session{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    QDBusConnection user = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "user");
    SignalCounter pressSignals{user, "org.kde.kglobalaccel.Component", "globalShortcutPressed"};
    /// Its time stands still, so no press is forgotten.
    fakes::VirtualLoop loop;
    std::optional<keys::KeyboardLayout> layout =
        keys::KeyboardLayout::fromNames({"evdev", "pc105", "us,de", "", ""}).value();
    std::unique_ptr<platform::plasma::PlasmaHotKeys> hotKeys =
        std::make_unique<platform::plasma::PlasmaHotKeys>(loop, session, [this] { return &*layout; });
    int presses = 0;
    Subscription handler = hotKeys->installHandler([this](const platform::HotKeyEvent*) {
        ++presses;
        return platform::noErr;
    });
};

} // namespace velloran::tests
