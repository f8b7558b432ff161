#pragma once

#include "fakes/VirtualLoop.h"
#include "harness/PrivateBus.h"
#include "platform/HotkeyConsent.h"
#include "platform/bus/SessionBus.h"

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

/// The home of a user who has no settings yet.
class PrivateHome {
public:
    PrivateHome() {
        // Each its own: the settings have a file of the same name in two of them.
        for (const char* const name : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
            const std::string folder = path(name);
            std::filesystem::create_directory(folder);
            std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
            set(name, QByteArray::fromStdString(folder));
        }
        set("GSETTINGS_BACKEND", "dconf");
    }

    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;

    ~PrivateHome() {
        for (auto left = before_.rbegin(); left != before_.rend(); ++left) {
            if (left->second) {
                qputenv(left->first, *left->second);
            } else {
                qunsetenv(left->first);
            }
        }
    }

    /// Until the end of the test.
    void set(const char* name, const QByteArray& value) {
        before_.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
        qputenv(name, value);
    }

    [[nodiscard]] std::string path(const std::string& name) const {
        return folder_.filePath(QString::fromStdString(name)).toStdString();
    }

    /// A program that others find before the system's own.
    void addTool(const std::string& name, const std::string& script) {
        std::ofstream(path(name)) << "#!/bin/sh\n" << script;
        QFile::setPermissions(QString::fromStdString(path(name)),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        set("PATH", folder_.path().toUtf8() + ':' + qgetenv("PATH"));
    }

private:
    QTemporaryDir folder_;
    std::vector<std::pair<const char*, std::optional<QByteArray>>> before_;
};

/// A user who is asked, and answers when the test says so.
struct FakeConsent final : platform::HotkeyConsent {
    Subscription ask(const std::string& shortcut, Answered answered) override {
        asked.push_back(shortcut);
        question = std::move(answered);
        return Subscription([this] { question = nullptr; });
    }

    void answer(bool agreed) {
        const Answered open = std::exchange(question, nullptr);
        open(agreed);
    }

    std::vector<std::string> asked;
    Answered question;
};

/// The real settings of GNOME's, in a home of the test's own, and a bus on which its service for keys comes when a test
/// has it come.
class GnomeBench : public testing::Test {
protected:
    static constexpr auto listSchema = "org.gnome.settings-daemon.plugins.media-keys";
    static constexpr auto listKey = "custom-keybindings";

    GnomeBench() {
        std::ifstream service("/usr/share/dbus-1/services/ca.desrt.dconf.service");
        for (std::string line; std::getline(service, line);) {
            if (line.starts_with("Exec=")) {
                bus.offer("ca.desrt.dconf", line.substr(5));
            }
        }
    }

    ~GnomeBench() override { QDBusConnection::disconnectFromBus("gnome"); }

    template<typename Condition>
    static bool until(Condition condition) {
        return QTest::qWaitFor(condition, 10000);
    }

    void bringService() const {
        QDBusConnection gnome = QDBusConnection::connectToBus(QString::fromStdString(bus.address()), "gnome");
        ASSERT_TRUE(gnome.registerService("org.gnome.SettingsDaemon.MediaKeys"));
    }

    /// Runs a program as a user of this bus does. What it prints, or what went wrong.
    [[nodiscard]] std::string runTool(const QString& program, const QStringList& arguments) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromStdString(bus.address()));
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        // Who answers it is in this program.
        const bool isOver = QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 10000);
        return isOver && process.exitCode() == 0 ? process.readAllStandardOutput().trimmed().toStdString()
                                                 : "failed: " + process.readAllStandardError().toStdString();
    }

    [[nodiscard]] std::string settings(const QStringList& arguments) const {
        return runTool("/usr/bin/gsettings", arguments);
    }

    /// The user's list.
    [[nodiscard]] std::string list() const { return settings({"get", listSchema, listKey}); }

    void setList(const QString& written) const { EXPECT_EQ(settings({"set", listSchema, listKey, written}), ""); }

    /// How the desktop's settings know one of the shortcuts.
    [[nodiscard]] static QString place(const std::string& name) {
        return QString(listSchema) + ".custom-keybinding:" + QString::fromStdString(path(name));
    }

    [[nodiscard]] static std::string path(const std::string& name) {
        return "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/" + name + "/";
    }

    [[nodiscard]] std::string ours(const QString& key) const { return settings({"get", place("velloran"), key}); }

    void setShortcut(const std::string& name, const QString& key, const QString& value) const {
        EXPECT_EQ(settings({"set", place(name), key, value}), "");
    }

    PrivateHome home;
    PrivateBus bus;
    platform::bus::SessionBus session{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    fakes::VirtualLoop loop;
    FakeConsent consent;
};

} // namespace velloran::tests
