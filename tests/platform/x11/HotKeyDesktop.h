#pragma once

#include "platform/HotKeys.h"
#include "platform/x11/Desktop.h"

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
        x11->hotKeys().installHandler([this](const platform::HotKeyEvent* event) {
            fired.push_back(event->hotKeyId);
            return platform::noErr;
        });
    }

    platform::HotKeys::Reference registered(std::uint32_t keyCode, std::uint32_t modifiers,
                                            platform::HotKeyId id = ourId) {
        platform::HotKeys::Reference reference = 0;
        EXPECT_EQ(x11->hotKeys().registerHotKey(keyCode, modifiers, id, reference), platform::noErr);
        EXPECT_NE(reference, 0U);
        return reference;
    }

    platform::Status statusOf(std::uint32_t keyCode, std::uint32_t modifiers) {
        platform::HotKeys::Reference reference = 0;
        const platform::Status status = x11->hotKeys().registerHotKey(keyCode, modifiers, ourId, reference);
        EXPECT_EQ(reference != 0, status == platform::noErr);
        return status;
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

    std::vector<platform::HotKeyId> fired;
};

} // namespace velloran::tests
