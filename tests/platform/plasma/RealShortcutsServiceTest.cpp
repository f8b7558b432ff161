#include "harness/PrivateServer.h"
#include "platform/plasma/RealPlasmaBench.h"

#include <QStringList>

namespace velloran::tests {
namespace {

using platform::controlModifier;
using platform::HotKeyAnswer;
using platform::hotKeyExistsError;
using platform::shiftModifier;
using platform::plasma::KeySequence;
using platform::plasma::KeySequenceList;

constexpr std::uint32_t macF8 = 100;
constexpr std::uint32_t macS = 1;
constexpr std::uint32_t mac5 = 23;
constexpr int controlF8 = int(Qt::ControlModifier) | int(Qt::Key_F8);

/// Plasma's service for hot keys by itself, on an X server. In a session on Wayland the same code is part of KWin.
class RealShortcutsServiceTest : public RealPlasmaBench {
protected:
    void SetUp() override {
        for (const char* const name : {"kglobalaccel5", "/usr/lib/*/libexec/kglobalacceld"}) {
            if (program.empty() && isInstalled(name)) {
                program = name;
            }
        }
        if (program.empty()) {
            GTEST_SKIP() << "neither kglobalaccel5 nor kglobalacceld is installed";
        }
        ASSERT_TRUE(server.isUp());
        // The first key of another keyboard has the service grab its keys anew, perhaps too late for that very key.
        ASSERT_NO_FATAL_FAILURE(type("key", "F1"));
        ASSERT_NO_FATAL_FAILURE(start());
        ASSERT_TRUE(until([this] { return isOffered(); }));
    }

    void start() {
        service.emplace(
            inSession({"DISPLAY=" + server.displayName(), "QT_QPA_PLATFORM=xcb", "sh", "-c", "exec " + program}));
        ASSERT_TRUE(until([this] { return hasOwner("org.kde.kglobalaccel"); }));
    }

    void type(const std::string& what, const std::string& keys) {
        ASSERT_EQ(runProgram({"env", "DISPLAY=" + server.displayName(), "xdotool", what, keys}), 0);
    }

    /// Plasma 5 has it in the path, and Plasma 6 does not.
    std::string program;
    PrivateServer server;
    std::optional<ChildProcess> service;
};

TEST_F(RealShortcutsServiceTest, IsPressedWithItsKey) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macF8));
    for (int times = 1; times < 4; ++times) {
        ASSERT_NO_FATAL_FAILURE(type("key", "ctrl+F8"));
        EXPECT_TRUE(until([&] { return presses == times; }));
    }
    ASSERT_NO_FATAL_FAILURE(type("key", "F8"));
    ASSERT_NO_FATAL_FAILURE(type("key", "ctrl+F8"));
    EXPECT_TRUE(until([&] { return presses == 4; })) << "without Control it is none";
}

TEST_F(RealShortcutsServiceTest, ShiftIsPartOfIt) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macS, controlModifier | shiftModifier));
    ASSERT_NO_FATAL_FAILURE(type("key", "ctrl+shift+s"));
    EXPECT_TRUE(until([this] { return presses == 1; }));
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, mac5, controlModifier | shiftModifier));
    ASSERT_NO_FATAL_FAILURE(type("key", "ctrl+shift+5"));
    EXPECT_TRUE(until([this] { return presses == 2; }));
}

TEST_F(RealShortcutsServiceTest, TakenOneIsRefusedWithItsHolder) {
    const QStringList identity{"org.example.Other", "zoom", "Magnifier", "Zoom in"};
    ask("org.kde.kglobalaccel", "/kglobalaccel", "org.kde.KGlobalAccel", "doRegister", {identity});
    ask("org.kde.kglobalaccel", "/kglobalaccel", "org.kde.KGlobalAccel", "setShortcutKeys",
        {identity, QVariant::fromValue(KeySequenceList{KeySequence{controlF8}}), 6U});
    Hotkey hotkey;
    want(hotkey, macF8);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.last().status, hotKeyExistsError);
    EXPECT_EQ(hotkey.last().holder, "Magnifier (Zoom in)");
    EXPECT_EQ(holders(controlF8), 1);
    ask("org.kde.kglobalaccel", "/kglobalaccel", "org.kde.KGlobalAccel", "unregister", {identity[0], identity[1]});
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macF8));
}

TEST_F(RealShortcutsServiceTest, IsGivenBackOnChangeAndAtTheEnd) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macF8));
    EXPECT_EQ(holders(controlF8), 1);
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macS));
    EXPECT_EQ(holders(controlF8), 0);
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macF8));
    hotKeys.reset();
    EXPECT_TRUE(until([this] { return holders(controlF8) == 0; }));
}

TEST_F(RealShortcutsServiceTest, KilledAndStartedAnewItHasItAgain) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, macF8));
    service->sendSignal(SIGKILL);
    ASSERT_TRUE(until([&] { return hotkey.last().status != platform::noErr; }));
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    ASSERT_NO_FATAL_FAILURE(type("key", "ctrl+F8"));
    EXPECT_TRUE(until([this] { return presses == 1; }));
}

} // namespace
} // namespace velloran::tests
