#include "platform/hyprland/FakeHyprland.h"

#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <utility>

namespace velloran::tests {

namespace {

void sendAll(int connection, const std::string& bytes) {
    [[maybe_unused]] const auto sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

} // namespace

FakeHyprland::FakeHyprland(std::string path)
    : path_(std::move(path)), listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        listen(listener_, 8) == 0 && pipe(wakeUp_.data()) == 0) {
        thread_ = std::thread([this] { work(); });
    }
}

FakeHyprland::~FakeHyprland() {
    close(wakeUp_[1]);
    if (thread_.joinable()) {
        thread_.join();
    }
    close(wakeUp_[0]);
    for (const int connection : held_) {
        close(connection);
    }
    close(listener_);
    unlink(path_.c_str());
}

void FakeHyprland::answerWith(std::vector<std::string> pieces) {
    const std::lock_guard lock(mutex_);
    pieces_ = std::move(pieces);
    isHolding_ = false;
}

void FakeHyprland::holdAnswers() {
    const std::lock_guard lock(mutex_);
    isHolding_ = true;
}

void FakeHyprland::answerHeld(const std::string& answer) {
    const std::lock_guard lock(mutex_);
    for (const int connection : std::exchange(held_, {})) {
        sendAll(connection, answer);
        close(connection);
    }
}

std::vector<std::string> FakeHyprland::requests() {
    const std::lock_guard lock(mutex_);
    return requests_;
}

bool FakeHyprland::awaitRequests(std::size_t number) {
    std::unique_lock lock(mutex_);
    return asked_.wait_for(lock, std::chrono::seconds(10), [&] { return requests_.size() >= number; });
}

void FakeHyprland::work() {
    while (true) {
        std::array<pollfd, 2> descriptors{{{listener_, POLLIN, 0}, {wakeUp_[0], POLLIN, 0}}};
        if (poll(descriptors.data(), descriptors.size(), -1) > 0 && descriptors[1].revents != 0) {
            return;
        }
        const int connection = accept(listener_, nullptr, nullptr);
        if (connection >= 0) {
            serve(connection);
        }
    }
}

void FakeHyprland::serve(int connection) {
    std::array<char, 256> bytes{};
    const auto count = recv(connection, bytes.data(), bytes.size(), 0);
    std::vector<std::string> pieces;
    {
        const std::lock_guard lock(mutex_);
        requests_.emplace_back(bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0));
        if (isHolding_) {
            held_.push_back(connection);
            asked_.notify_all();
            return;
        }
        pieces = pieces_;
        asked_.notify_all();
    }
    for (const std::string& piece : pieces) {
        sendAll(connection, piece);
        awaitRead(connection);
    }
    close(connection);
}

/// Waits until the other side has read everything, or has gone, or this ends.
void FakeHyprland::awaitRead(int connection) {
    for (int left = 1; left > 0;) {
        std::array<pollfd, 2> others{{{connection, POLLIN, 0}, {wakeUp_[0], POLLIN, 0}}};
        if (ioctl(connection, SIOCOUTQ, &left) != 0 || (left > 0 && poll(others.data(), others.size(), 1) != 0)) {
            return;
        }
    }
}

} // namespace velloran::tests
