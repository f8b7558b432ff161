#pragma once

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "async/Published.h"
#include "keys/CurrentLayout.h"
#include "platform/Desktop.h"
#include "platform/HotKeys.h"
#include "platform/wayland/HotKeyProtocol.h"
#include "platform/wayland/WaylandConnection.h"
#include "platform/wayland/WaylandOwned.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velloran::platform::wayland {

/// Hot keys that the compositor binds for every program that asks: by `xx-hotkey-v1`, else by `vicinae-hotkey-v1`. They
/// are by symbol: the one that the key gives by itself in the layout of the time; another layout has them asked for
/// anew. One that the compositor takes back is not asked for again before somebody registers it anew. Has a connection
/// of its own. A compositor that answers late, ends, or comes back is followed; one that ends the connection three
/// times is left alone, as it may not like what it is asked. Main thread.
class CompositorHotKeys final : public HotKeys {
public:
    /// Connects to the compositor of that name, as `WaylandConnection::open`, without waiting for it. Without a
    /// `layout` it is the system's default.
    CompositorHotKeys(EventLoop& loop, std::string compositor, keys::CurrentLayout layout);
    CompositorHotKeys(const CompositorHotKeys&) = delete;
    CompositorHotKeys& operator=(const CompositorHotKeys&) = delete;
    ~CompositorHotKeys() override;

    /// Gives the compositor that long to say what it offers. For the start of the program: nothing else here waits.
    void waitForOffer(std::chrono::milliseconds atMost);

    /// The hot keys alone: these, for as long as the compositor offers one of the protocols; nothing in all of it where
    /// it does not. Awaited until it has said so, half a minute at most. This has to outlive whoever uses them.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

    /// The layout tells something else from now on.
    void followLayout();

    Subscription installHandler(Handler handler) override;
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private:
    class Registration;
    using RegistrationRef = std::shared_ptr<Registration>;

    void connect();
    void disconnect();
    void lose();
    void ask();
    void add(std::uint32_t name, std::string_view interface);
    void remove(std::uint32_t name);
    void bindBest();
    void tell();

    [[nodiscard]] std::uint32_t symbolOf(std::uint32_t keyCode) const;
    void bind(Registration& registration);
    void release(Registration& registration);
    void end(const RegistrationRef& registration);

    /// A global, by its number in the registry; none has 0.
    using GlobalName = std::uint32_t;

    EventLoop& loop_;
    const std::string compositor_;
    const keys::CurrentLayout layout_;
    Published<Desktop> parts_;
    Observers<const HotKeyEvent*> handlers_;
    std::unique_ptr<WaylandConnection> connection_;
    WaylandOwned<wl_registry> registry_;
    GlobalName xx_ = 0;
    GlobalName vicinae_ = 0;
    /// Which of them `protocol_` is.
    GlobalName used_ = 0;
    std::unique_ptr<HotKeyProtocol> protocol_;
    /// Comes after everything that was there at the beginning.
    WaylandOwned<wl_callback> answer_;
    bool isDecided_ = false;
    /// Whether it is still thought to say so.
    bool isPatient_ = true;
    int losses_ = 0;
    std::vector<RegistrationRef> registrations_;
    ScheduledCall patience_;
    ScheduledCall retry_;
};

} // namespace velloran::platform::wayland
