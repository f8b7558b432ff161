#include "platform/wayland/Sway.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <utility>

namespace velloran::tests {

namespace {

/// Any but root will do: what the user "nobody" has everywhere.
constexpr uid_t substituteForRoot = 65534;

} // namespace

Sway::Sway(const std::string& configuration, const Files& files) {
    std::string folder = std::filesystem::temp_directory_path() / "velloran-sway-XXXXXX";
    folder_ = mkdtemp(folder.data());
    std::filesystem::create_directory(runtimeFolder());
    std::filesystem::permissions(runtimeFolder(), std::filesystem::perms::owner_all);
    configure(configuration, files);
    if (getuid() == 0) {
        for (const auto& path : {folder_, runtimeFolder()}) {
            if (chown(path.c_str(), substituteForRoot, substituteForRoot) != 0) {
                return;
            }
        }
    }
    start();
}

void Sway::configure(const std::string& configuration, const Files& files) const {
    std::ofstream(folder_ / "config") << "xwayland disable\n"
                                         "output HEADLESS-1 resolution 800x600\n"
                                         "default_border none\n"
                                         "focus_follows_mouse no\n"
                                         "exec echo up $WAYLAND_DISPLAY\n"
                                      << configuration;
    for (const auto& [name, text] : files) {
        std::filesystem::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name) << text;
    }
}

Sway::~Sway() {
    process_.reset();
    std::filesystem::remove_all(folder_);
}

std::vector<std::string> Sway::withEnvironment(std::vector<std::string> command) const {
    std::vector<std::string> whole{"env", "XDG_RUNTIME_DIR=" + runtimeFolder().string(), "WAYLAND_DISPLAY=" + display_};
    whole.insert(whole.end(), command.begin(), command.end());
    return whole;
}

bool Sway::command(const std::string& words) const {
    return runProgram({"swaymsg", "--socket", commandSocket(), "--", words}) == 0;
}

void Sway::crash() {
    process_->sendSignal(SIGKILL);
    process_->wait();
}

void Sway::start() {
    std::vector<std::string> command{
        "env",
        "--unset=WAYLAND_DISPLAY",
        "--unset=DISPLAY",
        "--unset=DBUS_SESSION_BUS_ADDRESS",
        "HOME=" + folder_.string(),
        "XDG_RUNTIME_DIR=" + runtimeFolder().string(),
        "SWAYSOCK=" + commandSocket(),
        "WLR_BACKENDS=headless",
        "WLR_RENDERER=pixman",
        "WLR_LIBINPUT_NO_DEVICES=1",
    };
    if (getuid() == 0) {
        const std::string id = std::to_string(substituteForRoot);
        // A change of the user lifts what ends a child with its parent.
        command.insert(command.end(),
                       {"setpriv", "--reuid", id, "--regid", id, "--clear-groups", "--pdeathsig", "KILL"});
    }
    command.insert(command.end(), {"sway", "--config", folder_ / "config"});
    process_ = std::make_unique<ChildProcess>(std::move(command));
    constexpr std::string_view announcement = "up ";
    const std::string line = process_->readLine().value_or("");
    display_ = line.starts_with(announcement) ? line.substr(announcement.size()) : "";
}

} // namespace velloran::tests
