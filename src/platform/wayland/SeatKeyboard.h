#pragma once

#include "async/EventLoop.h"
#include "keys/KeyboardLayout.h"
#include "platform/KeyCharacters.h"
#include "platform/wayland/WaylandConnection.h"
#include "platform/wayland/WaylandOwned.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace velloran::platform::wayland {

/// What the keys of the user's keyboard give: the keymap of the first seat, as the compositor tells it to every client.
/// Follows another keyboard and another keymap. Which of several layouts in it is active is told only to the window
/// with the focus, so it is always the first. Has a connection of its own. Main thread.
class SeatKeyboard final : public KeyCharacters {
public:
    /// Connects to the compositor of that name, as `WaylandConnection::open`, without waiting for it.
    SeatKeyboard(EventLoop& loop, const std::string& compositor);
    ~SeatKeyboard() override;

    /// Whether there is a compositor that may tell.
    [[nodiscard]] bool isConnected() const { return connection_ && !connection_->isLost(); }

    /// Gives the compositor that long to tell the keymap. For the start of the program: nothing else here waits.
    void waitForKeymap(std::chrono::milliseconds atMost);

    /// Calls it whenever `layout` may tell something else from then on.
    void onChanged(std::function<void()> changed) { changed_ = std::move(changed); }

    /// The layout of the keyboard; null while there is none. Lives until the next turn of the loop.
    const keys::KeyboardLayout* layout();

    std::optional<std::string> charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) override;

private:
    void ask();
    void add(std::uint32_t name);
    void remove(std::uint32_t name);
    void setHasKeyboard(bool hasKeyboard);
    void takeKeymap(std::uint32_t format, int file, std::uint32_t size);
    void disconnect();

    std::unique_ptr<WaylandConnection> connection_;
    WaylandOwned<wl_registry> registry_;
    std::uint32_t seatName_ = 0;
    WaylandOwned<wl_seat> seat_;
    WaylandOwned<wl_keyboard> keyboard_;
    /// Until the seat, its keyboard and that keyboard's keymap are known, each the answer to a question behind the
    /// last.
    int answersMissing_ = 3;
    WaylandOwned<wl_callback> answer_;
    /// Read into a layout only when one is asked for.
    std::string keymapText_;
    std::optional<keys::KeyboardLayout> layout_;
    std::function<void()> changed_;
};

} // namespace velloran::platform::wayland
