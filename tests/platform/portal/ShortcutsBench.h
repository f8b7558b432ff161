#pragma once

#include "fakes/VirtualLoop.h"
#include "platform/portal/PortalBench.h"
#include "platform/portal/PortalHotKeys.h"
#include "platform/portal/Shortcut.h"

#include <QDBusObjectPath>

#include <optional>
#include <string>
#include <vector>

namespace velloran::tests {

/// A bus, and this program's hot keys through whichever portal a test has come.
class ShortcutsBench : public PortalBench {
protected:
    static constexpr auto backEndName = "org.freedesktop.impl.portal.desktop.velloran";
    static constexpr std::uint32_t keyF8 = 100;
    static constexpr std::uint32_t keyF9 = 101;
    static constexpr platform::HotKeyId ourId{7, 1};

    /// One registration, and what it was told.
    struct Hotkey {
        std::vector<platform::HotKeyAnswer> answers;
        Subscription registered;

        /// The last answer; a status that does not exist while there is none.
        [[nodiscard]] platform::HotKeyAnswer last() const {
            return answers.empty() ? platform::HotKeyAnswer{99, {}} : answers.back();
        }
    };

    [[nodiscard]] bool isOffered() const { return hotKeys.part().get().part != nullptr; }

    /// Has a portal come that offers shortcuts.
    void bring() {
        fake.emplace(bus.address());
        ASSERT_TRUE(until([this] { return isOffered(); }));
    }

    void want(Hotkey& hotkey, std::uint32_t key = keyF8) {
        hotkey.registered = hotKeys.registerHotKey(
            key, platform::controlModifier, ourId,
            [&hotkey](const platform::HotKeyAnswer& answer) { hotkey.answers.push_back(answer); });
    }

    /// Waits until the portal is asked for the method, beyond what it was asked for before.
    void expectRequest(const QString& method) {
        ASSERT_TRUE(until([&] { return fake->requests == answered + 1; })) << method.toStdString();
        ASSERT_EQ(fake->request.method, method);
    }

    void respond(uint response, const QVariantMap& results = {}) {
        answered = fake->requests;
        fake->respond(response, results);
    }

    /// Goes on to where the desktop may show its dialog.
    void reachDialog() {
        ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
        respond(0);
        ASSERT_NO_FATAL_FAILURE(expectRequest("BindShortcuts"));
        sessionPath = fake->request.arguments.value(0).value<QDBusObjectPath>().path();
    }

    static QVariantMap shortcut(const QString& identifier, const QString& words) {
        const platform::portal::ShortcutList list{{identifier, {{"description", "x"}, {"trigger_description", words}}}};
        return {{"shortcuts", QVariant::fromValue(list)}};
    }

    /// All the way to a hotkey, Control and F8.
    void bind(Hotkey& hotkey, const QString& words = "Ctrl+F8") {
        ASSERT_NO_FATAL_FAILURE(want(hotkey));
        ASSERT_NO_FATAL_FAILURE(reachDialog());
        ASSERT_NO_FATAL_FAILURE(grant(hotkey, words));
    }

    void grant(Hotkey& hotkey, const QString& words = "Ctrl+F8") {
        respond(0, shortcut("toggle-ctrl-f8", words));
        ASSERT_TRUE(until([&] { return hotkey.last().status == platform::noErr; }));
    }

    /// The desktop's keyboard.
    void press(const QString& identifier = "toggle-ctrl-f8") { tell("Activated", identifier); }

    void release(const QString& identifier = "toggle-ctrl-f8") { tell("Deactivated", identifier); }

    void tell(const QString& what, const QString& identifier) {
        fake->tellOfShortcut(what, sessionPath, identifier);
        settle();
    }

    /// Nothing more was asked for than what was answered.
    void expectNoRequest() {
        settle();
        EXPECT_EQ(fake->requests, answered);
    }

    /// The portal is killed, and another one comes.
    void restartPortal() {
        fake->vanish();
        ASSERT_TRUE(until([this] { return !isOffered(); }));
        answered = 0;
        ASSERT_NO_FATAL_FAILURE(bring());
    }

    fakes::VirtualLoop loop;
    platform::portal::PortalHotKeys hotKeys{loop, portal, QStringList(backEndName), nullptr};
    std::vector<platform::HotKeyId> presses;
    Subscription handler = hotKeys.installHandler([this](const platform::HotKeyEvent* event) {
        presses.push_back(event->hotKeyId);
        return platform::noErr;
    });
    /// Of the session that was made last.
    QString sessionPath;
    /// How many requests the portal has answered.
    int answered = 0;
};

} // namespace velloran::tests
