#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "platform/WindowAbilities.h"
#include "platform/wayland/WaylandConnection.h"
#include "platform/wayland/WaylandOwned.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct wl_array;

namespace velloran::platform::wayland {

/// Asks the compositor what it does with windows. That is told only to who opens one by a newer version of the shell's
/// protocol; not every toolkit knows that version, and none has a word for it. So a window is begun here that never
/// shows, on a connection of its own, which ends with the answer. Main thread.
class AbilitiesQuestion {
public:
    /// Asks the compositor of that name, as `WaylandConnection::open`; nobody where there is no name.
    AbilitiesQuestion(EventLoop& loop, const std::optional<std::string>& compositor);
    AbilitiesQuestion(const AbilitiesQuestion&) = delete;
    AbilitiesQuestion& operator=(const AbilitiesQuestion&) = delete;
    ~AbilitiesQuestion();

    /// Until it has been told, the compositor can do everything; so it does for ever if it is too old to tell.
    [[nodiscard]] const Published<WindowAbilities>& answer() const { return answer_; }

    /// Gives the compositor that long to tell. For the start of the program: nothing else here waits.
    void waitForAnswer(std::chrono::milliseconds atMost);

    /// Whether the connection has ended, and with it the question.
    [[nodiscard]] bool isOver() const { return !connection_; }

private:
    void add(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void beginWindow();
    void take(const wl_array& abilities);
    void endSoon();
    void end();

    EventLoop& loop_;
    Published<WindowAbilities> answer_{WindowAbilities{}};
    std::unique_ptr<WaylandConnection> connection_;
    WaylandOwned<wl_registry> registry_;
    /// What the compositor offers has been told.
    WaylandOwned<wl_callback> everything_;
    WaylandOwned<wl_compositor> compositor_;
    WaylandOwned<xdg_wm_base> shell_;
    WaylandOwned<wl_surface> surface_;
    WaylandOwned<xdg_surface> shellSurface_;
    WaylandOwned<xdg_toplevel> window_;
    bool isAnswered_ = false;
    ScheduledCall ending_;
};

} // namespace velloran::platform::wayland
