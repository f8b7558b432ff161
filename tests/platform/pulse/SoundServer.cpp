#include "platform/pulse/SoundServer.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velloran::tests {

namespace {

constexpr int longestWait = 30'000; // milliseconds without any news

} // namespace

SoundServer::SoundServer() {
    std::string name = (std::filesystem::temp_directory_path() / "velloran-sound-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    log_ = folder_ + "/log";
    setenv("HOME", folder_.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    setenv("PULSE_SERVER", ("unix:" + folder_ + "/native").c_str(), 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
}

SoundServer::~SoundServer() {
    process_.reset();
    std::filesystem::remove_all(folder_);
}

bool SoundServer::start() {
    // There from the start, so that it can be watched.
    std::ofstream(log_).close();
    process_ = std::make_unique<ChildProcess>(std::vector<std::string>{
        "pulseaudio", "-n", "-v", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
        "--log-target=file:" + log_, "--disallow-exit", "--high-priority=yes", "--realtime=yes", "-L",
        "module-null-sink sink_name=test format=s16le rate=48000 channels=1", "-L",
        "module-native-protocol-unix auth-anonymous=1 socket=" + folder_ + "/native"});
    return waitForLog("Daemon startup complete");
}

void SoundServer::kill() {
    process_->sendSignal(SIGKILL);
    process_->wait();
}

void SoundServer::freeze() {
    process_->sendSignal(SIGSTOP);
}

void SoundServer::thaw() {
    process_->sendSignal(SIGCONT);
}

bool SoundServer::logHolds(const std::string& text) const {
    std::ifstream stream(log_);
    const std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return content.find(text) != std::string::npos;
}

bool SoundServer::waitForLog(const std::string& text) const {
    const int changes = inotify_init1(IN_CLOEXEC);
    inotify_add_watch(changes, log_.c_str(), IN_MODIFY);
    bool isFound = logHolds(text);
    while (!isFound) {
        pollfd wait{changes, POLLIN, 0};
        if (poll(&wait, 1, longestWait) <= 0) {
            break;
        }
        alignas(inotify_event) std::array<char, 4096> events{};
        [[maybe_unused]] const ssize_t size = read(changes, events.data(), events.size());
        isFound = logHolds(text);
    }
    close(changes);
    return isFound;
}

} // namespace velloran::tests
