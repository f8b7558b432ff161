#include "platform/wayland/AbilitiesQuestion.h"

#include <cstddef>
#include <utility>

namespace velloran::platform::wayland {

namespace {

constexpr std::uint32_t firstCompositorVersion = 1;
/// From this one on abilities are told.
constexpr std::uint32_t shellVersion = XDG_TOPLEVEL_WM_CAPABILITIES_SINCE_VERSION;

} // namespace

AbilitiesQuestion::AbilitiesQuestion(EventLoop& loop, const std::optional<std::string>& compositor)
    : loop_(loop), connection_(compositor ? WaylandConnection::open(loop, *compositor, [this] { end(); }) : nullptr) {
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* /*registry*/, std::uint32_t name, const char* interface, std::uint32_t version) {
            static_cast<AbilitiesQuestion*>(data)->add(name, interface, version);
        },
        [](void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {},
    };
    static constexpr wl_callback_listener everythingListener{
        [](void* data, wl_callback* /*callback*/, std::uint32_t /*data*/) {
            static_cast<AbilitiesQuestion*>(data)->beginWindow();
        },
    };
    if (connection_) {
        connection_->send([this] {
            registry_.reset(wl_display_get_registry(connection_->display()));
            wl_registry_add_listener(registry_.get(), &listener, this);
            everything_.reset(wl_display_sync(connection_->display()));
            wl_callback_add_listener(everything_.get(), &everythingListener, this);
        });
    }
}

AbilitiesQuestion::~AbilitiesQuestion() {
    end();
}

void AbilitiesQuestion::waitForAnswer(std::chrono::milliseconds atMost) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + atMost;
    while (connection_ && !connection_->isLost() && !isAnswered_ && Clock::now() < end) {
        connection_->waitAndRead(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
    }
}

void AbilitiesQuestion::add(std::uint32_t name, std::string_view interface, std::uint32_t version) {
    if (interface == wl_compositor_interface.name) {
        connection_->send([&] {
            compositor_.reset(static_cast<wl_compositor*>(
                wl_registry_bind(registry_.get(), name, &wl_compositor_interface, firstCompositorVersion)));
        });
    } else if (interface == xdg_wm_base_interface.name && version >= shellVersion) {
        connection_->send([&] {
            shell_.reset(static_cast<xdg_wm_base*>(
                wl_registry_bind(registry_.get(), name, &xdg_wm_base_interface, shellVersion)));
        });
    }
}

void AbilitiesQuestion::beginWindow() {
    static constexpr xdg_toplevel_listener windowListener{
        [](void* /*data*/, xdg_toplevel* /*window*/, std::int32_t /*width*/, std::int32_t /*height*/,
           wl_array* /*states*/) {},
        [](void* /*data*/, xdg_toplevel* /*window*/) {},
        [](void* /*data*/, xdg_toplevel* /*window*/, std::int32_t /*width*/, std::int32_t /*height*/) {},
        [](void* data, xdg_toplevel* /*window*/, wl_array* abilities) {
            static_cast<AbilitiesQuestion*>(data)->take(*abilities);
        },
    };
    // The last that is told before a window may show.
    static constexpr xdg_surface_listener surfaceListener{
        [](void* data, xdg_surface* /*surface*/, std::uint32_t /*serial*/) {
            static_cast<AbilitiesQuestion*>(data)->endSoon();
        },
    };
    everything_.reset();
    if (!compositor_ || !shell_) {
        endSoon();
        return;
    }
    connection_->send([this] {
        surface_.reset(wl_compositor_create_surface(compositor_.get()));
        shellSurface_.reset(xdg_wm_base_get_xdg_surface(shell_.get(), surface_.get()));
        xdg_surface_add_listener(shellSurface_.get(), &surfaceListener, this);
        window_.reset(xdg_surface_get_toplevel(shellSurface_.get()));
        xdg_toplevel_add_listener(window_.get(), &windowListener, this);
        // Without a picture: it is not to show.
        wl_surface_commit(surface_.get());
    });
}

void AbilitiesQuestion::take(const wl_array& abilities) {
    WindowAbilities told{false, false, false};
    const auto* const first = static_cast<const std::uint32_t*>(abilities.data);
    for (std::size_t i = 0; i < abilities.size / sizeof *first; ++i) {
        told.opensMenu = told.opensMenu || first[i] == XDG_TOPLEVEL_WM_CAPABILITIES_WINDOW_MENU;
        told.maximizes = told.maximizes || first[i] == XDG_TOPLEVEL_WM_CAPABILITIES_MAXIMIZE;
        told.minimizes = told.minimizes || first[i] == XDG_TOPLEVEL_WM_CAPABILITIES_MINIMIZE;
    }
    answer_.set(told);
}

void AbilitiesQuestion::endSoon() {
    isAnswered_ = true;
    // The connection is being read.
    ending_ = ScheduledCall(loop_, loop_.post([this] { end(); }));
}

void AbilitiesQuestion::end() {
    window_.reset();
    shellSurface_.reset();
    surface_.reset();
    shell_.reset();
    compositor_.reset();
    everything_.reset();
    registry_.reset();
    connection_.reset();
}

} // namespace velloran::platform::wayland
