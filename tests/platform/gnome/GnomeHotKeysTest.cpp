#include "platform/gnome/GnomeHotKeys.h"

#include "platform/gnome/GnomeBench.h"

#include <QElapsedTimer>

#include <filesystem>

namespace velloran::tests {
namespace {

using platform::controlModifier;
using platform::HotKeyAnswer;
using platform::HotKeyEvent;
using platform::hotKeyExistsError;
using platform::HotKeyId;
using platform::hotKeyInvalidError;
using platform::noErr;
using platform::optionModifier;
using platform::gnome::GnomeHotKeys;

constexpr std::uint32_t codeOfS = 1;
constexpr std::uint32_t codeOfF8 = 100;
constexpr HotKeyId firstId{7, 1};
const HotKeyAnswer refusal{hotKeyInvalidError, {}};

HotKeyAnswer refusalBecause(const std::string& reason) {
    return {hotKeyInvalidError, {}, false, {}, reason};
}

const std::string others = "['/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/custom1/', \"/it's/\", "
                           "'/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/custom0/']";

class GnomeHotKeysTest : public GnomeBench {
protected:
    /// One registration, and what it was told.
    struct Hotkey {
        std::vector<HotKeyAnswer> answers;
        Subscription registered;

        [[nodiscard]] HotKeyAnswer last() const { return answers.empty() ? HotKeyAnswer{99, {}} : answers.back(); }
    };

    void make() {
        hotKeys.emplace(loop, session, QString::fromStdString(bus.address()), consent, nullptr,
                        [this] { return isRunning; });
        handler = hotKeys->installHandler([this](const HotKeyEvent* event) {
            presses.push_back(event->hotKeyId);
            return noErr;
        });
    }

    void bring() {
        make();
        ASSERT_NO_FATAL_FAILURE(bringService());
        ASSERT_TRUE(until([this] { return hotKeys->part().get().part != nullptr; }));
    }

    void want(Hotkey& hotkey, std::uint32_t key = codeOfF8, std::uint32_t modifiers = controlModifier) {
        hotkey.registered.cancel();
        hotkey.registered = hotKeys->registerHotKey(
            key, modifiers, firstId, [&hotkey](const HotKeyAnswer& answer) { hotkey.answers.push_back(answer); });
    }

    void bind(Hotkey& hotkey, std::uint32_t key = codeOfF8, std::uint32_t modifiers = controlModifier) {
        want(hotkey, key, modifiers);
        ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
        consent.answer(true);
        ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
        ASSERT_EQ(hotkey.last(), HotKeyAnswer());
    }

    void leaveEntry(const QString& binding) {
        Hotkey hotkey;
        ASSERT_NO_FATAL_FAILURE(bring());
        ASSERT_NO_FATAL_FAILURE(bind(hotkey));
        const QString command = QString::fromStdString(ours("command"));
        hotkey.registered.cancel();
        hotKeys.reset();
        setShortcut("velloran", "command", command);
        setShortcut("velloran", "binding", binding);
        setList("['" + QString::fromStdString(path("velloran")) + "']");
        QDBusConnection::disconnectFromBus("gnome");
        consent.asked.clear();
    }

    /// With a hotkey that was given up while its list could not be read, and still cannot.
    void leaveWhatCannotBeTakenAway() {
        Hotkey hotkey;
        ASSERT_NO_FATAL_FAILURE(bring());
        ASSERT_NO_FATAL_FAILURE(bind(hotkey));
        home.addTool("gsettings", "if [ $1 = get ] && [ ! -e " + home.path("mended") + " ]; then touch " +
                                      home.path("tried") + "; exit 1; fi\nexec /usr/bin/gsettings \"$@\"\n");
        hotkey.registered.cancel();
        ASSERT_TRUE(until([this] { return std::filesystem::exists(home.path("tried")); }));
        ASSERT_EQ(list(), "['" + path("velloran") + "']");
    }

    void mend() const { std::ofstream(home.path("mended")) << '.'; }

    /// Runs what the desktop runs for a press.
    [[nodiscard]] std::string runCommand() const {
        const QString command = QString::fromStdString(ours("command"));
        return runTool("/bin/sh", {"-c", command.mid(1, command.size() - 2)});
    }

    std::optional<GnomeHotKeys> hotKeys;
    std::vector<HotKeyId> presses;
    bool isRunning = false;
    Subscription handler;
};

TEST_F(GnomeHotKeysTest, AreThereFromWhenTheServiceIsSeen) {
    make();
    EXPECT_TRUE(hotKeys->part().get().isAwaited);
    EXPECT_NE(hotKeys->part().get().reason, "");
    ASSERT_TRUE(until([this] { return !hotKeys->part().get().isAwaited; }));
    EXPECT_EQ(hotKeys->part().get(), platform::DesktopPart<platform::HotKeys>()) << "it has no say in it";
    ASSERT_NO_FATAL_FAILURE(bringService());
    ASSERT_TRUE(until([this] { return hotKeys->part().get().part != nullptr; }));
    EXPECT_NE(hotKeys->part().get().reason, "");
    EXPECT_EQ(hotKeys->part().get().limit, "");
}

TEST_F(GnomeHotKeysTest, AreNotThereWhereTheSettingsHaveNoSuchEntries) {
    home.set("XDG_DATA_DIRS", "/nonexistent");
    make();
    ASSERT_NO_FATAL_FAILURE(bringService());
    ASSERT_TRUE(until([this] { return !hotKeys->part().get().isAwaited; }));
    EXPECT_EQ(hotKeys->part().get(), platform::DesktopPart<platform::HotKeys>());
}

TEST_F(GnomeHotKeysTest, AreAwaitedForHalfAMinuteAtMost) {
    bus.holdStill();
    make();
    loop.advance(29);
    EXPECT_TRUE(hotKeys->part().get().isAwaited);
    loop.advance(2);
    EXPECT_EQ(hotKeys->part().get(), platform::DesktopPart<platform::HotKeys>());
    bus.goOn();
    ASSERT_NO_FATAL_FAILURE(bringService());
    EXPECT_TRUE(until([this] { return hotKeys->part().get().part != nullptr; })) << "it is heard all the same";
}

TEST_F(GnomeHotKeysTest, NothingIsWrittenBeforeTheUserAgrees) {
    setList(QString::fromStdString(others));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey, codeOfS, controlModifier | optionModifier);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    EXPECT_EQ(consent.asked, std::vector<std::string>{"Ctrl+Alt+S"});
    EXPECT_EQ(list(), others);
    EXPECT_EQ(ours("binding"), "''");
    EXPECT_TRUE(hotkey.answers.empty());
    consent.answer(false);
    EXPECT_EQ(hotkey.answers,
              std::vector{refusalBecause("You have not agreed to put the hotkey among your shortcuts.")});
    hotKeys.reset();
    EXPECT_EQ(list(), others);
    EXPECT_EQ(ours("binding"), "''");
    EXPECT_EQ(ours("command"), "''");
}

TEST_F(GnomeHotKeysTest, OnceAgreedItStandsBehindTheUsersOwn) {
    setList(QString::fromStdString(others));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, codeOfS, controlModifier | optionModifier));
    EXPECT_EQ(list(), others.substr(0, others.size() - 1) + ", '" + path("velloran") + "']");
    EXPECT_EQ(ours("binding"), "'<Control><Alt>s'");
    EXPECT_EQ(ours("name"), "'Velloran: Start or stop clicking'");
    EXPECT_NE(ours("command"), "''");
}

TEST_F(GnomeHotKeysTest, WhenItIsClearedItGoesAndNothingElse) {
    setList(QString::fromStdString(others));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    hotkey.registered.cancel();
    EXPECT_TRUE(until([this] { return list() == others && ours("binding") == "''"; }));
    EXPECT_EQ(ours("command"), "''");
    EXPECT_EQ(ours("name"), "''");
    EXPECT_EQ(hotkey.answers.size(), 1U);
}

TEST_F(GnomeHotKeysTest, WithTheProgramItGoesAsWell) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    hotKeys.reset();
    EXPECT_EQ(list(), "@as []");
    EXPECT_EQ(ours("binding"), "''");
    EXPECT_EQ(hotkey.answers.size(), 1U);
}

TEST_F(GnomeHotKeysTest, WithTheProgramItGoesInTheMiddleOfBeingWritten) {
    setList(QString::fromStdString(others));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    consent.answer(true);
    hotkey.registered.cancel();
    hotKeys.reset();
    EXPECT_EQ(list(), others);
    EXPECT_EQ(ours("binding"), "''");
    EXPECT_TRUE(hotkey.answers.empty());
}

TEST_F(GnomeHotKeysTest, WhatAnotherShortcutOfTheUserHasIsTaken) {
    setList("['" + QString::fromStdString(path("custom0")) + "']");
    setShortcut("custom0", "name", "Take a break");
    setShortcut("custom0", "binding", "<Primary>F8");
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.last(), (HotKeyAnswer{hotKeyExistsError, {}, false, "Take a break"}));
    EXPECT_TRUE(consent.asked.empty());
    Hotkey other;
    ASSERT_NO_FATAL_FAILURE(bind(other, codeOfS));
}

TEST_F(GnomeHotKeysTest, AListThatCannotBeReadIsLeftAlone) {
    home.addTool("gsettings", "case $1 in list-relocatable-schemas) exec /usr/bin/gsettings \"$@\";; "
                              "get) echo '[1, 2]';; *) echo \"$@\" >>" +
                                  home.path("written") + ";; esac\n");
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    EXPECT_TRUE(consent.asked.empty());
    hotKeys.reset();
    EXPECT_FALSE(std::filesystem::exists(home.path("written")));
}

TEST_F(GnomeHotKeysTest, ADesktopThatStandsStillHoldsUpTheEndForASecondOnly) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    home.addTool("gsettings", "exec sleep 60\n");
    QElapsedTimer watch;
    watch.start();
    hotKeys.reset();
    EXPECT_LT(watch.elapsed(), 5000);
}

TEST_F(GnomeHotKeysTest, WhatAKilledProgramHasLeftIsTakenOver) {
    ASSERT_NO_FATAL_FAILURE(leaveEntry("<Control>F8"));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.last(), HotKeyAnswer());
    EXPECT_TRUE(consent.asked.empty()) << "somebody has agreed to just that";
    hotkey.registered.cancel();
    EXPECT_TRUE(until([this] { return list() == "@as []"; }));
}

TEST_F(GnomeHotKeysTest, WhatAKilledProgramHasLeftOfAnotherGoes) {
    ASSERT_NO_FATAL_FAILURE(leaveEntry("<Control>F9"));
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    want(hotkey);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    EXPECT_EQ(list(), "@as []");
}

TEST_F(GnomeHotKeysTest, WhatAKilledProgramHasLeftGoesWhereNobodyWantsIt) {
    ASSERT_NO_FATAL_FAILURE(leaveEntry("<Control>F8"));
    ASSERT_NO_FATAL_FAILURE(bring());
    loop.advance(1);
    EXPECT_TRUE(until([this] { return list() == "@as []"; }));
}

TEST_F(GnomeHotKeysTest, WhatCannotBeTakenAwayIsTriedAgain) {
    ASSERT_NO_FATAL_FAILURE(leaveWhatCannotBeTakenAway());
    mend();
    EXPECT_TRUE(until([this] {
        loop.advance(1);
        return list() == "@as []";
    }));
}

TEST_F(GnomeHotKeysTest, WhatCannotBeTakenAwayGoesWithTheProgram) {
    ASSERT_NO_FATAL_FAILURE(leaveWhatCannotBeTakenAway());
    mend();
    hotKeys.reset();
    EXPECT_EQ(list(), "@as []");
}

TEST_F(GnomeHotKeysTest, WhatCannotBeTakenAwayIsNotTriedAllTheTime) {
    ASSERT_NO_FATAL_FAILURE(leaveWhatCannotBeTakenAway());
    const auto isTried = [this] { return std::filesystem::exists(home.path("tried")); };
    std::filesystem::remove(home.path("tried"));
    EXPECT_FALSE(QTest::qWaitFor(isTried, 300));
    loop.advance(30);
    EXPECT_TRUE(until(isTried));
}

TEST_F(GnomeHotKeysTest, AnotherIsRefusedWhereTheOldOneCannotBeTakenAway) {
    ASSERT_NO_FATAL_FAILURE(leaveEntry("<Control>F9"));
    ASSERT_NO_FATAL_FAILURE(bring());
    // It can be looked at, and not be changed.
    home.addTool("gsettings", "if [ $1 = set ]; then exit 1; fi\nexec /usr/bin/gsettings \"$@\"\n");
    Hotkey hotkey;
    want(hotkey);
    EXPECT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.answers, std::vector{refusal});
    EXPECT_TRUE(consent.asked.empty());
}

TEST_F(GnomeHotKeysTest, TheCommandReachesItAndAHeldKeyCountsOnce) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    EXPECT_EQ(runCommand(), "()");
    EXPECT_EQ(presses, std::vector{firstId});
    for (int i = 0; i < 5; ++i) {
        loop.advance(i == 0 ? 0.5 : 0.03);
        EXPECT_EQ(runCommand(), "()");
    }
    loop.advance(10);
    EXPECT_EQ(presses.size(), 1U);
    EXPECT_EQ(runCommand(), "()");
    EXPECT_EQ(presses.size(), 2U);
}

TEST_F(GnomeHotKeysTest, AStopIsNotWaitedFor) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    EXPECT_EQ(runCommand(), "()");
    EXPECT_EQ(presses.size(), 1U);
    isRunning = true;
    loop.advance(0.5);
    EXPECT_EQ(runCommand(), "()");
    EXPECT_EQ(presses.size(), 2U);
}

TEST_F(GnomeHotKeysTest, APressWithoutAHotkeyDoesNothing) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    const QString command = QString::fromStdString(ours("command"));
    hotkey.registered.cancel();
    EXPECT_EQ(runTool("/bin/sh", {"-c", command.mid(1, command.size() - 2)}), "()");
    Hotkey asking;
    want(asking);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    EXPECT_EQ(runTool("/bin/sh", {"-c", command.mid(1, command.size() - 2)}), "()");
    EXPECT_TRUE(presses.empty());
}

TEST_F(GnomeHotKeysTest, APressDoesNotStartTheProgram) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    const QString command = QString::fromStdString(ours("command"));
    // In a session where it does not run, but may be started.
    const PrivateBus another;
    another.offer("app.velloran.Velloran", "/usr/bin/touch " + home.path("started"));
    const QString there = "DBUS_SESSION_BUS_ADDRESS=" + QString::fromStdString(another.address()) + ' ';
    EXPECT_TRUE(runTool("/bin/sh", {"-c", there + command.mid(1, command.size() - 2)}).starts_with("failed: "));
    EXPECT_FALSE(std::filesystem::exists(home.path("started")));
    static_cast<void>(runTool("/bin/sh", {"-c", there + "gdbus call --session --dest app.velloran.Velloran "
                                                        "--object-path / --method a.b.c"}));
    EXPECT_TRUE(std::filesystem::exists(home.path("started"))) << "nothing would start it anyway";
}

TEST_F(GnomeHotKeysTest, WhatTheUserMakesOfItInTheSettingsIsTold) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    setShortcut("velloran", "binding", "<Super>b");
    EXPECT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer{noErr, "Super+B"}; }));
    setShortcut("velloran", "binding", "");
    EXPECT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer{noErr, {}, true}; }));
    setShortcut("velloran", "binding", "<Primary>F8");
    EXPECT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    setList("@as []");
    const auto gone = refusalBecause("The shortcut is not among those in the desktop's settings any more.");
    EXPECT_TRUE(until([&] { return hotkey.last() == gone; }));
}

TEST_F(GnomeHotKeysTest, OfOneThatWasReplacedNothingIsHeardAnyMore) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey first;
    want(first);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    first.registered.cancel();
    EXPECT_EQ(consent.question, nullptr) << "nobody wants to know any more";
    want(first);
    ASSERT_TRUE(until([this] { return consent.question != nullptr; }));
    consent.answer(true);
    first.registered.cancel();
    Hotkey second;
    ASSERT_NO_FATAL_FAILURE(bind(second, codeOfS));
    EXPECT_EQ(ours("binding"), "'<Control>s'");
    EXPECT_TRUE(first.answers.empty());
}

TEST_F(GnomeHotKeysTest, ThereIsOneAtATimeAndOnlyOfKeysThatGiveSomething) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey none;
    want(none, 0xFFFF);
    EXPECT_EQ(none.answers, std::vector{refusal});
    Hotkey first;
    want(first);
    Hotkey second;
    want(second, codeOfS);
    EXPECT_EQ(second.answers, (std::vector{HotKeyAnswer{hotKeyExistsError, {}}}));
    EXPECT_TRUE(first.answers.empty());
}

TEST_F(GnomeHotKeysTest, ARestartOfTheServiceChangesNothing) {
    ASSERT_NO_FATAL_FAILURE(bring());
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey));
    QDBusConnection::disconnectFromBus("gnome");
    ASSERT_NO_FATAL_FAILURE(bringService());
    EXPECT_EQ(runCommand(), "()");
    EXPECT_EQ(presses.size(), 1U);
    EXPECT_EQ(hotkey.answers.size(), 1U);
}

} // namespace
} // namespace velloran::tests
