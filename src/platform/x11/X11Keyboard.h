#pragma once

#include "keys/KeyboardLayout.h"
#include "platform/x11/MainConnection.h"

#include <bitset>
#include <cstdint>
#include <optional>

namespace velloran::platform::x11 {

/// The server's keyboard as this program sees it, through the XKB extension. Main thread. Once the server is gone, or
/// where it lacks the extension, it knows nothing.
class X11Keyboard {
public:
    /// One bit for each key code.
    using Keys = std::bitset<256>;

    /// Asks the server to leave out the releases that it makes up while a key repeats, and to tell of changes.
    explicit X11Keyboard(MainConnection& connection);

    /// Whether the server has the extension.
    [[nodiscard]] bool isPresent() const { return isPresent_; }

    /// The server's key code for an evdev code; nothing when the server has no such key.
    [[nodiscard]] std::optional<xcb_keycode_t> keyCode(std::uint32_t evdevCode) const;

    /// The keys that are down now. Waits for the server.
    [[nodiscard]] Keys keysDown();

    /// Whether the event tells that keys or modifiers have changed their meaning.
    [[nodiscard]] bool isMappingChange(const xcb_generic_event_t& event) const;

    /// What the keys give now. Costs some milliseconds: ask once, keep the answer, ask again for the next use.
    [[nodiscard]] Result<keys::KeyboardLayout> layout();

    /// What is in force now besides the keys that are down. Waits for the server.
    [[nodiscard]] keys::KeyboardState state();

private:
    MainConnection& connection_;
    bool isPresent_ = false;
    std::uint8_t eventBase_ = 0;
};

} // namespace velloran::platform::x11
