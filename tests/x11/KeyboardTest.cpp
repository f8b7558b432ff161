#include "platform/x11/X11Keyboard.h"
#include "support/Desktop.h"

#include <linux/input-event-codes.h>

namespace velloran::tests {

class X11KeyboardTest : public Desktop {
protected:
    [[nodiscard]] std::string characters(std::uint32_t evdevCode) {
        const auto layout = x11->keyboard().layout();
        EXPECT_TRUE(layout.ok());
        return layout.ok() ? layout.value().charactersIgnoringModifiers(evdevCode, x11->keyboard().group(), false) : "";
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
    EXPECT_EQ(x11->keyboard().group(), 1U);
    EXPECT_EQ(characters(KEY_Y), "н");
}

TEST_F(X11KeyboardTest, KeyCodesAreEvdevCodesPlusEight) {
    EXPECT_EQ(x11->keyboard().keyCode(KEY_F8), f8Key);
    EXPECT_EQ(platform::x11::X11Keyboard::evdevCode(f8Key), static_cast<std::uint32_t>(KEY_F8));
    EXPECT_EQ(x11->keyboard().keyCode(247), 255);
    EXPECT_EQ(x11->keyboard().keyCode(248), std::nullopt);
    EXPECT_EQ(x11->keyboard().keyCode(KEY_FN), std::nullopt);
    EXPECT_EQ(platform::x11::X11Keyboard::evdevCode(3), 0U);
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
