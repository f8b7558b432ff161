#pragma once

#include "async/Subscription.h"

#include <cstdint>
#include <functional>
#include <string>

namespace velloran::platform {

/// What became of a request; zero is success.
using Status = std::int32_t;

inline constexpr Status noErr = 0;
/// Another program owns the combination.
inline constexpr Status hotKeyExistsError = -9878;
/// The key cannot be grabbed here, or this desktop has no such facility.
inline constexpr Status hotKeyInvalidError = -9879;

/// Bits of the modifier keys of a hot key.
inline constexpr std::uint32_t commandModifier = 0x100;
inline constexpr std::uint32_t shiftModifier = 0x200;
inline constexpr std::uint32_t optionModifier = 0x800;
inline constexpr std::uint32_t controlModifier = 0x1000;

/// Tells hot keys apart: whose it is, and which of theirs.
struct HotKeyId {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;

    friend bool operator==(const HotKeyId&, const HotKeyId&) = default;
};

/// A hot key was pressed.
struct HotKeyEvent {
    HotKeyId hotKeyId;
};

/// What a desktop says to a registration.
struct HotKeyAnswer {
    Status status = noErr;
    /// What has to be pressed, in the desktop's words, where it bound something else than it was asked for.
    std::string otherTrigger;
    /// Whether there is nothing to press yet: its user chooses that in the desktop's settings.
    bool hasNoTrigger = false;
    /// Who has what is taken, in the words of the desktop, where it says.
    std::string holder = {};
    /// Why there is none, in one sentence, where that is more than the status tells.
    std::string reason = {};

    friend bool operator==(const HotKeyAnswer&, const HotKeyAnswer&) = default;
};

/// Registers system-wide key combinations. Main thread; everything handed over is called on it.
class HotKeys {
public:
    /// Receives presses. Returns `noErr` when it has dealt with the event.
    using Handler = std::function<Status(const HotKeyEvent*)>;
    using AnswerReceiver = std::function<void(const HotKeyAnswer&)>;

    HotKeys() = default;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    virtual ~HotKeys() = default;

    /// Calls `handler` for every press of a registered hot key, for as long as the result exists.
    virtual Subscription installHandler(Handler handler) = 0;

    /// Registers a combination for as long as the result exists: a layout-independent virtual key code and modifier
    /// bits as above. A press while it is held counts once.
    ///
    /// `answered` hears what became of it: from inside this call where the desktop knows at once, else in a later turn.
    /// The first answer decides. With a status other than `noErr` there is no hot key, the result has no effect any
    /// more, and no other answer follows. After `noErr` there is one for every change: a status when the desktop takes
    /// the hot key back, and `noErr` when it gives it back or binds another trigger. The result may be destroyed from
    /// inside an answer; none comes after that. The desktop's parts do not change inside this call.
    virtual Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                        AnswerReceiver answered) = 0;
};

} // namespace velloran::platform
