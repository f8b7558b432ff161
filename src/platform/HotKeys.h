#pragma once

#include <cstdint>
#include <functional>

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

/// Registers system-wide key combinations. Main thread; handlers are called on it.
class HotKeys {
public:
    /// Receives presses. Returns `noErr` when it has dealt with the event.
    using Handler = std::function<Status(const HotKeyEvent*)>;
    /// Names an installed handler or a registered hot key; zero names nothing.
    using Reference = std::uint64_t;

    HotKeys() = default;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;
    virtual ~HotKeys() = default;

    /// Calls `handler` for every press of a registered hot key until it is removed.
    virtual Reference installHandler(Handler handler) = 0;
    virtual void removeHandler(Reference handler) = 0;

    /// Registers a combination: a layout-independent virtual key code and modifier bits as above. A press while it is
    /// held counts once. On success `hotKey` names it; otherwise `hotKey` is left alone and the status says why.
    /// The status is all that is reported: what a desktop finds out later, or takes back, goes by without a word.
    virtual Status registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id, Reference& hotKey) = 0;
    virtual void unregisterHotKey(Reference hotKey) = 0;
};

} // namespace velloran::platform
