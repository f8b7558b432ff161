#pragma once

#include "harness/observer/Server.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloran::observer {

/// Something that the user's mouse or keyboard, or a program in their place, has done.
struct InputEvent {
    enum class Kind { buttonPress, buttonRelease, keyPress, keyRelease };

    Kind kind = Kind::buttonPress;
    /// Seen by the listener on the whole server instead of by the window. `code` is then a physical button number.
    bool isRaw = false;
    /// Button number or key code.
    unsigned code = 0;
    /// Modifiers and buttons just before; 0 for raw events.
    unsigned state = 0;
    /// Where the pointer was; for raw events, at the time of reading.
    Place place;
    /// Milliseconds on the server's clock.
    std::uint32_t serverTime = 0;
    /// Nanoseconds on CLOCK_MONOTONIC when it was read here.
    std::uint64_t arrival = 0;
};

/// Nanoseconds on CLOCK_MONOTONIC.
std::uint64_t monotonicNanoseconds();

/// Watches what happens: through a window of its own, as any program does, and on the whole server. The server hides
/// from windows a second press of a button that is down already; the listener on the whole server sees it.
class InputWatcher {
public:
    explicit InputWatcher(const Server& server) : server_(server) {}

    /// Opens a window and waits until it is visible; returns where it really is. Nothing when it does not show within
    /// some seconds. An unmanaged window is left alone by the window manager.
    std::optional<Area> openWindow(Area wanted, const std::string& title, bool isManaged);

    [[nodiscard]] xcb_window_t window() const { return window_; }

    /// Gives the window the keyboard focus. False when it does not get it.
    bool takeFocus();

    /// Listens to the buttons on the whole server. False when the server cannot do that.
    bool listenToServer();

    /// What has happened since the last call. Does not wait, and leaves the rest of a flood to the next call.
    std::vector<InputEvent> read();

    /// Waits until something happens, at most that long, and returns it.
    std::vector<InputEvent> waitAndRead(std::uint64_t mostNanoseconds);

private:
    /// False when there was nothing.
    bool drain();
    bool waitForReadable(std::uint64_t deadline) const;
    [[nodiscard]] bool isViewable() const;
    [[nodiscard]] Area areaOfWindow(Area wanted) const;
    [[nodiscard]] bool isRawButton(const xcb_generic_event_t& event) const;
    void take(const xcb_generic_event_t& event, Place pointer, std::uint64_t arrival);

    const Server& server_;
    xcb_window_t window_ = XCB_NONE;
    std::optional<std::uint8_t> rawExtension_;
    std::vector<InputEvent> events_;
};

} // namespace velloran::observer
