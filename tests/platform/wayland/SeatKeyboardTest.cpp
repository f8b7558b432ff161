#include "platform/wayland/SeatKeyboard.h"

#include "platform/wayland/LoopTest.h"
#include "platform/wayland/Sway.h"
#include "platform/wayland/Witness.h"

#include <linux/input-event-codes.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace velloran::tests {

using platform::wayland::SeatKeyboard;

class SeatKeyboardTest : public LoopTest {
protected:
    void SetUp() override { ASSERT_TRUE(sway.isUp()) << "sway must be installed"; }

    static constexpr std::chrono::seconds longest{10};

    Sway sway;
};

TEST_F(SeatKeyboardTest, TellsWhatTheKeysOfTheCompositorGive) {
    const Witness witness(sway);
    ASSERT_TRUE(witness.isReady());
    SeatKeyboard keyboard(loop, sway.display());
    keyboard.waitForKeymap(longest);
    EXPECT_NE(keyboard.layout(), nullptr);
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(KEY_S, false), "s");
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(KEY_1, true), "!");
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(KEY_LEFTSHIFT, false), std::nullopt);
}

TEST_F(SeatKeyboardTest, FollowsAKeyboardThatComesAndGoes) {
    SeatKeyboard keyboard(loop, sway.display());
    const auto start = std::chrono::steady_clock::now();
    keyboard.waitForKeymap(longest);
    EXPECT_LT(std::chrono::steady_clock::now() - start, longest) << "what there is not is not waited for";
    EXPECT_EQ(keyboard.layout(), nullptr);
    auto witness = std::make_unique<Witness>(sway);
    ASSERT_TRUE(until([&] { return keyboard.layout() != nullptr; }));
    witness.reset();
    EXPECT_TRUE(until([&] { return keyboard.layout() == nullptr; }));
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(KEY_S, false), std::nullopt);
}

TEST_F(SeatKeyboardTest, FollowsAnotherLayout) {
    Witness witness(sway);
    SeatKeyboard keyboard(loop, sway.display());
    ASSERT_TRUE(until([&] { return keyboard.layout() != nullptr; }));
    EXPECT_EQ(keyboard.charactersIgnoringModifiers(KEY_Z, false), "z");
    std::optional<std::string> told;
    keyboard.onChanged([&] { told = keyboard.charactersIgnoringModifiers(KEY_Z, false); });
    witness.load("de");
    EXPECT_TRUE(until([&] { return keyboard.charactersIgnoringModifiers(KEY_Z, false) == "y"; }));
    EXPECT_EQ(told, "y");
}

TEST_F(SeatKeyboardTest, OutlivesTheCompositor) {
    const Witness witness(sway);
    SeatKeyboard keyboard(loop, sway.display());
    ASSERT_TRUE(until([&] { return keyboard.layout() != nullptr; }));
    sway.crash();
    EXPECT_LT(turnsDuring(0.3), 10);
    SeatKeyboard none(loop, sway.display());
    none.waitForKeymap(longest);
    EXPECT_EQ(none.layout(), nullptr);
}

} // namespace velloran::tests
