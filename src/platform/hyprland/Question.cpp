#include "platform/hyprland/Question.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

namespace velloran::platform::hyprland {

namespace {

/// Many times what is ever answered.
constexpr std::size_t longestAnswer = 4096;

} // namespace

std::unique_ptr<Question> Question::ask(const std::string& socketName, const std::string& words) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketName.size() >= sizeof address.sun_path) {
        return nullptr;
    }
    socketName.copy(address.sun_path, socketName.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) {
        return nullptr;
    }
    std::unique_ptr<Question> question(new Question(descriptor));
    // So few bytes are taken in whole or not at all.
    const bool isAsked =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        send(descriptor, words.data(), words.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(words.size());
    return isAsked ? std::move(question) : nullptr;
}

Question::~Question() {
    close(socket_);
}

bool Question::wait(std::chrono::steady_clock::time_point end) {
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
    pollfd descriptor{socket_, POLLIN, 0};
    if (isOver_ || poll(&descriptor, 1, static_cast<int>(std::max(left, milliseconds(0)).count())) <= 0) {
        return false;
    }
    read();
    return true;
}

void Question::read() {
    std::array<char, 512> bytes{};
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
    if (count > 0) {
        answer_.append(bytes.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        isOver_ = true;
    }
    if (answer_.size() > longestAnswer) {
        answer_.clear();
        isOver_ = true;
    }
}

} // namespace velloran::platform::hyprland
