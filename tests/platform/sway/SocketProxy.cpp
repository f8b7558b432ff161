#include "platform/sway/SocketProxy.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <vector>

namespace velloran::tests {

namespace {

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

int connectedTo(const std::string& path) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = addressOf(path);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace

SocketProxy::SocketProxy(std::string target)
    : target_(std::move(target)), listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    std::string name = std::filesystem::temp_directory_path() / "velloran-proxy-XXXXXX";
    folder_ = mkdtemp(name.data());
    const auto address = addressOf(path());
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        listen(listener_, 8) == 0) {
        thread_ = std::thread([this] { work(); });
    }
}

SocketProxy::~SocketProxy() {
    isEnding_ = true;
    thread_.join();
    close(listener_);
    std::filesystem::remove_all(folder_);
}

void SocketProxy::cut(bool isOpen) {
    isOpen_ = isOpen;
    isCutting_ = true;
    isCutting_.wait(true);
}

bool SocketProxy::handOn(int from, int to) {
    std::array<char, 65536> bytes{};
    const ssize_t count = recv(from, bytes.data(), bytes.size(), 0);
    if (count > 0) {
        return send(to, bytes.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
    }
    shutdown(to, SHUT_WR);
    return false;
}

void SocketProxy::work() {
    while (!isEnding_) {
        std::vector<pollfd> watched{{listener_, POLLIN, 0}};
        for (const auto& [client, server] : pairs_) {
            watched.push_back({client, POLLIN, 0});
            watched.push_back({server, POLLIN, 0});
        }
        poll(watched.data(), watched.size(), 5);
        std::size_t place = 1;
        for (auto pair = pairs_.begin(); pair != pairs_.end(); place += 2) {
            if (watched[place].revents != 0) {
                // Whoever has said all may still be answered.
                handOn(pair->first, pair->second);
            }
            const bool isWhole = watched[place + 1].revents == 0 || handOn(pair->second, pair->first);
            if (isWhole && !isCutting_) {
                ++pair;
            } else {
                close(pair->first);
                close(pair->second);
                pair = pairs_.erase(pair);
            }
        }
        if (isCutting_.exchange(false)) {
            isCutting_.notify_all();
        }
        const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const int server = client >= 0 && isOpen_ ? connectedTo(target_) : -1;
        if (server >= 0) {
            pairs_.emplace_back(client, server);
        } else if (client >= 0) {
            close(client);
        }
    }
    for (const auto& [client, server] : pairs_) {
        close(client);
        close(server);
    }
}

} // namespace velloran::tests
