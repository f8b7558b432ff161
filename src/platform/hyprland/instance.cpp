#include "platform/hyprland/instance.h"

#include <filesystem>
#include <fstream>

namespace velloran::platform::hyprland {

std::optional<std::string> requestSocket(const std::string& folder, const std::string& compositor) {
    // Its process, and the name of its compositor.
    std::ifstream lock(folder + "/hyprland.lock");
    std::string process;
    std::string own;
    if (std::getline(lock, process) && std::getline(lock, own) && own != std::filesystem::path(compositor).filename()) {
        return std::nullopt;
    }
    return folder + "/.socket.sock";
}

} // namespace velloran::platform::hyprland
