#pragma once

#include "platform/sway/SwayHotKeys.h"

#include "platform/wayland/LoopTest.h"
#include "platform/wayland/Sway.h"
#include "platform/wayland/Witness.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

using namespace platform;
using sway::SwayHotKeys;

/// A key by its stored number and by evdev's.
struct Key {
    std::uint32_t number;
    unsigned code;
};

inline constexpr Key f8{100, 66};
inline constexpr Key f9{101, 67};
inline constexpr Key letterS{1, 31};

inline constexpr unsigned shiftBit = 1;
inline constexpr unsigned controlBit = 4;
inline constexpr unsigned altBit = 8;
inline constexpr unsigned superBit = 64;
inline constexpr unsigned capsLockBit = 2;

inline constexpr HotKeyId ourId{0x564C524E, 1};

/// Hot keys at a sway of the test's own, and another client that has the focus and types.
class SwayHotKeysTest : public LoopTest {
protected:
    void SetUp() override { start({}); }

    /// Starts sway, with further lines of configuration and further files beside it.
    void start(const std::string& configuration, const Sway::Files& files = {}) {
        ownSway = std::make_unique<Sway>(configuration, files);
        Sway& sway = *ownSway;
        ASSERT_TRUE(sway.isUp()) << "sway must be installed";
        witness = std::make_unique<Witness>(sway);
        ASSERT_TRUE(witness->isReady());
        connect(ownSway->commandSocket());
    }

    void connect(const std::string& socket) {
        hotKeys = std::make_unique<SwayHotKeys>(loop, socket, layout);
        handler = hotKeys->installHandler([this](const HotKeyEvent* event) {
            fired.push_back(event->hotKeyId);
            return noErr;
        });
    }

    /// Registers and waits for the answer.
    Subscription registered(Key key, std::uint32_t modifiers, HotKeyId id = ourId) {
        answers.clear();
        Subscription result = hotKeys->registerHotKey(
            key.number, modifiers, id, [this](const HotKeyAnswer& answer) { answers.push_back(answer.status); });
        EXPECT_TRUE(until([this] { return !answers.empty(); }));
        return result;
    }

    /// Whether presses are told as often, and not more often once another hot key that came after them was told.
    bool untilFired(std::size_t times) {
        return until([this, times] { return fired.size() >= times; });
    }

    /// Whether the window gets that key, which it does in some time after the hot key has ended.
    bool untilWindowGets(Key key, unsigned modifiers) {
        return until([this, key, modifiers] {
            const std::size_t before = witness->keyPresses();
            witness->tap(key.code, modifiers);
            return witness->keyPresses() > before;
        });
    }

    /// What a configuration has to begin with that goes to another mode.
    static inline const std::string otherMode = "mode other bindsym F12 nop\n";

    /// Whether the user's binding of that key, which opens the other mode, is there. Leaves the mode again.
    bool isUsers(Key key, unsigned modifiers) {
        const std::size_t before = witness->keyPresses();
        witness->tap(key.code, modifiers);
        const bool isSwallowed = witness->keyPresses() == before;
        // In the mode this key is nobody's, so the window gets it.
        witness->tap(key.code, modifiers);
        const bool isInMode = witness->keyPresses() == before + 1;
        EXPECT_TRUE(ownSway->command("mode default"));
        return isSwallowed && isInMode;
    }

    std::unique_ptr<Sway> ownSway;
    keys::CurrentLayout layout;
    std::unique_ptr<Witness> witness;
    std::unique_ptr<SwayHotKeys> hotKeys;
    Subscription handler;
    std::vector<Status> answers;
    std::vector<HotKeyId> fired;
};

} // namespace velloran::tests
