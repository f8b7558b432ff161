#include "platform/x11/Desktop.h"
#include "platform/x11/X11KeyCharacters.h"
#include "platform/x11/X11Keyboard.h"

#include <linux/input-event-codes.h>

namespace velloran::tests {

class X11KeyboardTest : public Desktop {
protected:
    [[nodiscard]] std::string characters(std::uint32_t evdevCode, bool shiftHeld = false) {
        platform::x11::X11KeyCharacters characters(x11->keyboard());
        return characters.charactersIgnoringModifiers(evdevCode, shiftHeld).value_or("nothing");
    }

    void setLayout(const std::string& layout) const {
        ASSERT_EQ(runProgram({"setxkbmap", "-display", server.displayName(), "-layout", layout}), 0);
    }
};

TEST_F(X11KeyboardTest, TellsTheServersLayoutOfTheMoment) {
    EXPECT_EQ(characters(KEY_Y), "y");
    setLayout("de");
    EXPECT_EQ(characters(KEY_Y), "z");
    setLayout("us,ru");
    EXPECT_EQ(characters(KEY_Y), "y");
    user->lockGroup(1);
    EXPECT_EQ(x11->keyboard().state().group, 1U);
    EXPECT_EQ(characters(KEY_Y), "н");
}

TEST_F(X11KeyboardTest, TheKeypadGivesTextWhileNumLockIsOn) {
    EXPECT_EQ(characters(KEY_KP5), "Keypad 5");
    EXPECT_EQ(characters(KEY_KPDOT), "Keypad .");
    user->lockModifiers(numLock, true);
    EXPECT_EQ(characters(KEY_KP5), "5");
    EXPECT_EQ(characters(KEY_KPDOT), ".");
    EXPECT_EQ(characters(KEY_KP5, true), "Keypad 5") << "Shift takes it back";
    user->lockModifiers(numLock, false);
    EXPECT_EQ(characters(KEY_KP5), "Keypad 5");
}

TEST_F(X11KeyboardTest, NumLockMayBeAnyModifier) {
    ASSERT_EQ(runProgram({"env", "DISPLAY=" + server.displayName(), "xmodmap", "-e", "clear mod2", "-e", "clear mod3",
                          "-e", "add mod3 = Num_Lock"}),
              0);
    user->lockModifiers(numLock, true);
    EXPECT_EQ(characters(KEY_KP5), "Keypad 5") << "where it customarily is";
    user->lockModifiers(mod3, true);
    EXPECT_EQ(characters(KEY_KP5), "5");
}

TEST_F(X11KeyboardTest, OtherLocksAreDropped) {
    user->lockModifiers(capsLock, true);
    EXPECT_EQ(characters(KEY_A), "a");
    setLayout("de");
    constexpr unsigned thirdLevel = 0x80;
    user->lockModifiers(thirdLevel, true);
    EXPECT_EQ(characters(KEY_Q), "q");
}

TEST_F(X11KeyboardTest, KeyCodesAreEvdevCodesPlusEight) {
    EXPECT_EQ(x11->keyboard().keyCode(KEY_F8), f8Key);
    EXPECT_EQ(x11->keyboard().keyCode(247), 255);
    EXPECT_EQ(x11->keyboard().keyCode(248), std::nullopt);
    EXPECT_EQ(x11->keyboard().keyCode(KEY_FN), std::nullopt);
}

TEST_F(X11KeyboardTest, TellsWhichKeysAreDown) {
    EXPECT_TRUE(x11->keyboard().keysDown().none());
    user->key(sKey, true);
    user->key(controlKey, true);
    const auto down = x11->keyboard().keysDown();
    EXPECT_EQ(down.count(), 2U);
    EXPECT_TRUE(down[sKey]);
    EXPECT_TRUE(down[controlKey]);
    user->releaseAll({sKey, controlKey});
    EXPECT_TRUE(x11->keyboard().keysDown().none());
}

} // namespace velloran::tests
