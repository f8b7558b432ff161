#include "platform/plasma/KWinHand.h"
#include "platform/plasma/PlasmaPointer.h"
#include "platform/plasma/RealPlasmaBench.h"

#include <linux/input-event-codes.h>
#include <unistd.h>

#include <fstream>

namespace velloran::tests {
namespace {

using platform::commandModifier;
using platform::controlModifier;
using platform::HotKeyAnswer;
using platform::hotKeyExistsError;
using platform::optionModifier;
using platform::Point;
using platform::shiftModifier;
using platform::plasma::PlasmaPointer;

/// KWin itself, as the compositor of a session without a screen.
class RealKWinTest : public RealPlasmaBench {
protected:
    void SetUp() override {
        if (!isInstalled("kwin_wayland")) {
            GTEST_SKIP() << "kwin_wayland is not installed";
        }
        if (getuid() == 0) {
            GTEST_SKIP() << "KWin does not run as the administrator";
        }
        std::ofstream(folder("config") + "/kxkbrc") << "[Layout]\nUse=true\nLayoutList=us,de\n";
        // What is granted to the program's file lets it start only where that can be granted.
        std::filesystem::copy_file("/usr/bin/kwin_wayland", folder("program") + "/kwin_wayland");
        ASSERT_NO_FATAL_FAILURE(start());
        ASSERT_TRUE(until([this] { return isOffered(); }));
    }

    void start() {
        process.emplace(inSession({"XDG_SESSION_TYPE=wayland", "XDG_CURRENT_DESKTOP=KDE", "KDE_FULL_SESSION=true",
                                   "KDE_SESSION_VERSION=6", "QT_QPA_PLATFORM=", "LIBGL_ALWAYS_SOFTWARE=1",
                                   folder("program") + "/kwin_wayland", "--virtual", "--width", "1280", "--height",
                                   "720", "--no-lockscreen", "--socket", "wayland-k"}));
        ASSERT_TRUE(until([this] {
            return hasOwner("org.kde.KWin") && hasOwner("org.kde.kglobalaccel") && hasOwner("org.kde.keyboard");
        }));
        hand.emplace(user);
        ASSERT_TRUE(hand->isReady());
    }

    void kill() {
        hand.reset();
        process->sendSignal(SIGKILL);
        process->wait();
    }

    /// Where the pointer is, once that is known.
    Point place() {
        std::optional<Point> found;
        EXPECT_TRUE(until([&] { return (found = pointer.currentPosition()).has_value(); }));
        return found.value_or(Point{-1, -1});
    }

    bool hasScript() {
        return ask("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting", "isScriptLoaded",
                   {QStringLiteral("app.velloran.Velloran")})
                   .arguments()
                   .value(0) == true;
    }

    std::optional<ChildProcess> process;
    std::optional<KWinHand> hand;
    PlasmaPointer pointer{loop, session};
};

constexpr std::uint32_t atF8 = 100;
constexpr std::uint32_t atF4 = 118;
constexpr std::uint32_t atS = 1;
constexpr std::uint32_t atZ = 6;
constexpr std::uint32_t at5 = 23;
constexpr std::uint32_t atTab = 48;
constexpr std::uint32_t atKeypad5 = 87;

TEST_F(RealKWinTest, HotkeyIsPressedOnceHoweverLongItIsHeld) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, atF8));
    hand->press({KEY_LEFTCTRL, KEY_F8});
    ASSERT_TRUE(until([this] { return pressSignals.count > 3; })) << "it repeats a held key";
    EXPECT_EQ(presses, 1);
    hand->release({KEY_F8, KEY_LEFTCTRL});
    hand->tap({KEY_LEFTCTRL, KEY_F8});
    EXPECT_TRUE(until([this] { return presses == 2; }));
}

TEST_F(RealKWinTest, EveryKindOfKeyIsKnownByWhatItGives) {
    struct Combination {
        std::uint32_t key;
        std::uint32_t modifiers;
        std::vector<std::uint32_t> held;
        std::uint32_t evdevCode;
    };

    const std::vector<Combination> combinations{
        {atS, controlModifier, {KEY_LEFTCTRL}, KEY_S},
        {atS, controlModifier | shiftModifier, {KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_S},
        {at5, controlModifier | shiftModifier, {KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_5},
        {atTab, controlModifier | shiftModifier, {KEY_LEFTCTRL, KEY_LEFTSHIFT}, KEY_TAB},
        {atS, controlModifier | optionModifier, {KEY_LEFTCTRL, KEY_LEFTALT}, KEY_S},
        {atF8, commandModifier | shiftModifier, {KEY_LEFTMETA, KEY_LEFTSHIFT}, KEY_F8},
        {atKeypad5, controlModifier, {KEY_LEFTCTRL}, KEY_KP5},
    };
    Hotkey hotkey;
    for (const Combination& one : combinations) {
        SCOPED_TRACE(one.evdevCode);
        ASSERT_NO_FATAL_FAILURE(bind(hotkey, one.key, one.modifiers));
        const int before = presses;
        for (const std::uint32_t code : one.held) {
            hand->press({code});
        }
        hand->tap({one.evdevCode});
        for (const std::uint32_t code : one.held) {
            hand->release({code});
        }
        EXPECT_TRUE(until([&] { return presses == before + 1; }));
    }
}

TEST_F(RealKWinTest, TakenHotkeyIsRefusedWithItsHolder) {
    Hotkey hotkey;
    want(hotkey, atF4, optionModifier);
    ASSERT_TRUE(until([&] { return !hotkey.answers.empty(); }));
    EXPECT_EQ(hotkey.last().status, hotKeyExistsError);
    EXPECT_EQ(hotkey.last().holder, "KWin (Close Window)");
}

TEST_F(RealKWinTest, HotkeyStaysAtItsPlaceWhenTheLayoutChanges) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, atZ));
    hand->tap({KEY_LEFTCTRL, KEY_Z});
    ASSERT_TRUE(until([this] { return presses == 1; }));
    const int controlY = int(Qt::ControlModifier) | int(Qt::Key_Y);
    ASSERT_EQ(holders(controlY), 0);
    ask("org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts", "setLayout", {1U});
    ASSERT_TRUE(until([&] { return holders(controlY) == 1; }));
    hand->tap({KEY_LEFTCTRL, KEY_Z});
    EXPECT_TRUE(until([this] { return presses == 2; }));
}

TEST_F(RealKWinTest, HotkeyIsGivenBackAtTheEnd) {
    const int wanted = int(Qt::ControlModifier) | int(Qt::Key_F8);
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, atF8));
    EXPECT_EQ(holders(wanted), 1);
    hotKeys.reset();
    EXPECT_TRUE(until([&] { return holders(wanted) == 0; }));
}

TEST_F(RealKWinTest, PointerIsWhereItIsMovedTo) {
    ASSERT_TRUE(until([this] { return pointer.part().get().part != nullptr; }));
    const Point first = place();
    hand->move(-40, 25);
    EXPECT_TRUE(until([&] {
        return pointer.currentPosition() == Point{first.x - 40, first.y + 25};
    })) << place().x
        << ' ' << place().y << " after " << first.x << ' ' << first.y;
    EXPECT_TRUE(hasScript());
}

TEST_F(RealKWinTest, ScriptIsUnloadedWhenNobodyWantsToKnow) {
    ASSERT_TRUE(until([this] { return pointer.part().get().part != nullptr; }));
    place();
    EXPECT_TRUE(hasScript());
    loop.advance(61);
    hand->move(3, 3);
    EXPECT_TRUE(until([this] { return !hasScript(); }));
    place();
    EXPECT_TRUE(hasScript());
}

TEST_F(RealKWinTest, NextKWinHasAllOfItAgain) {
    Hotkey hotkey;
    ASSERT_NO_FATAL_FAILURE(bind(hotkey, atF8));
    place();
    kill();
    ASSERT_TRUE(until([&] { return hotkey.last().status != platform::noErr; }));
    EXPECT_TRUE(until([this] { return pointer.currentPosition() == std::nullopt; }));
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_TRUE(until([&] { return hotkey.last() == HotKeyAnswer(); }));
    hand->tap({KEY_LEFTCTRL, KEY_F8});
    EXPECT_TRUE(until([this] { return presses == 1; }));
    const Point first = place();
    hand->move(7, 9);
    EXPECT_TRUE(until([&] { return pointer.currentPosition() == Point{first.x + 7, first.y + 9}; }));
}

} // namespace
} // namespace velloran::tests
