#include "platform/wayland/compositorProgram.h"

#include <sys/socket.h>

#include <wayland-client.h>

#include <fstream>
#include <memory>

namespace velloran::platform::wayland {

std::optional<std::string> compositorProgram(const std::string& compositor) {
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(wl_display_connect(compositor.c_str()),
                                                                                wl_display_disconnect);
    if (!display) {
        return std::nullopt;
    }
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(wl_display_get_fd(display.get()), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) {
        return std::nullopt;
    }
    std::ifstream file("/proc/" + std::to_string(peer.pid) + "/comm");
    std::string name;
    return std::getline(file, name) ? std::optional(name) : std::nullopt;
}

} // namespace velloran::platform::wayland
