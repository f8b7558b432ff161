#pragma once

#include "platform/HotKeys.h"
#include "platform/x11/Desktop.h"

#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

/// A desktop with a window that has the focus, and a handler that writes down which hot keys were pressed.
class HotKeyTest : public Desktop {
protected:
    /// Stored key numbers.
    static constexpr std::uint32_t f8 = 100;
    static constexpr std::uint32_t f9 = 101;
    static constexpr std::uint32_t letterS = 1;
    static constexpr platform::HotKeyId ourId{0x564C524E, 1};

    /// In seconds; a quick hand takes longer to press a key again.
    static constexpr double pauseBetweenPresses = 0.15;

    void SetUp() override {
        Desktop::SetUp();
        if (HasFatalFailure()) {
            return;
        }
        openWindow();
        handler = x11->hotKeys().installHandler([this](const platform::HotKeyEvent* event) {
            fired.push_back(event->hotKeyId);
            return platform::noErr;
        });
    }

    /// Registers until the test ends or cancels the result, which stays where it is. What is said to it is in
    /// `answers`.
    Subscription& registered(std::uint32_t keyCode, std::uint32_t modifiers, platform::HotKeyId id = ourId) {
        answers.clear();
        hotKeys.push_back(x11->hotKeys().registerHotKey(
            keyCode, modifiers, id, [this](const platform::HotKeyAnswer& answer) { answers.push_back(answer); }));
        EXPECT_EQ(answers, std::vector<platform::HotKeyAnswer>(1)) << "at once";
        return hotKeys.back();
    }

    platform::Status statusOf(std::uint32_t keyCode, std::uint32_t modifiers) {
        std::optional<platform::HotKeyAnswer> told;
        const Subscription hotKey = x11->hotKeys().registerHotKey(
            keyCode, modifiers, ourId, [&told](const platform::HotKeyAnswer& answer) { told = answer; });
        EXPECT_TRUE(told.has_value()) << "at once";
        return told.value_or(platform::HotKeyAnswer{}).status;
    }

    bool untilFired(std::size_t times) {
        return until([this, times] { return fired.size() >= times; });
    }

    /// Grabs and lets go again, as another program: whether nobody holds the combination.
    [[nodiscard]] bool isFree(std::uint8_t key, unsigned modifiers) const {
        const bool couldGrab = user->grabKey(key, modifiers);
        if (couldGrab) {
            user->ungrabKey(key, modifiers);
        }
        return couldGrab;
    }

    int runOnServer(std::vector<std::string> command) const {
        command.insert(command.begin(), {"env", "DISPLAY=" + server.displayName()});
        return runProgram(std::move(command));
    }

    Subscription handler;
    std::list<Subscription> hotKeys;
    std::vector<platform::HotKeyId> fired;
    std::vector<platform::HotKeyAnswer> answers;
};

} // namespace velloran::tests
