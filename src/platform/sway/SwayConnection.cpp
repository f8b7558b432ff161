#include "platform/sway/SwayConnection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace velloran::platform::sway {

namespace {

constexpr std::chrono::milliseconds patienceAtTheEnd(250);

} // namespace

std::unique_ptr<SwayConnection> SwayConnection::open(EventLoop& loop, const std::string& socketName, Receiver receiver,
                                                     std::function<void()> onLost) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketName.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return nullptr;
    }
    socketName.copy(address.sun_path, socketName.size());
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) {
        return nullptr;
    }
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int trouble = errno;
        close(descriptor);
        errno = trouble;
        return nullptr;
    }
    return std::unique_ptr<SwayConnection>(
        new SwayConnection(loop, descriptor, std::move(receiver), std::move(onLost)));
}

SwayConnection::SwayConnection(EventLoop& loop, int socket, Receiver receiver, std::function<void()> onLost)
    : loop_(loop),
      socket_(socket),
      receiver_(std::move(receiver)),
      loss_(loop, std::move(onLost)),
      reading_(loop.watch(socket, EventLoop::Readiness::readable, [this] { read(); })) {}

SwayConnection::~SwayConnection() {
    reading_.reset();
    writing_.reset();
    close(socket_);
}

void SwayConnection::send(const Message& message) {
    unsent_ += encode(message);
    write();
}

void SwayConnection::write() {
    if (!isLost() && !writeSome()) {
        loss_.report();
    }
    if (unsent_.empty() || isLost()) {
        writing_.reset();
    } else if (!writing_) {
        writing_ = loop_.watch(socket_, EventLoop::Readiness::writable, [this] { write(); });
    }
}

/// As much as the socket takes now. False where it takes nothing any more.
bool SwayConnection::writeSome() {
    while (!unsent_.empty()) {
        const ssize_t count = ::send(socket_, unsent_.data(), unsent_.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            unsent_.erase(0, static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            break;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void SwayConnection::read() {
    std::array<char, 4096> bytes{};
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
    if (count > 0) {
        reader_.append({bytes.data(), static_cast<std::size_t>(count)});
        while (const auto message = reader_.next()) {
            receiver_(*message);
        }
    }
    const bool isNothingThere = count < 0 && (errno == EAGAIN || errno == EINTR);
    if ((count <= 0 && !isNothingThere) || reader_.isBroken()) {
        loss_.report();
    }
}

void SwayConnection::finish() {
    reading_.reset();
    writing_.reset();
    const auto end = std::chrono::steady_clock::now() + patienceAtTheEnd;
    std::array<char, 4096> bytes{};
    bool isAllSent = false;
    while (true) {
        if (!isAllSent && unsent_.empty()) {
            // It ends the connection from its side when it has done everything.
            shutdown(socket_, SHUT_WR);
            isAllSent = true;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd ready{socket_, static_cast<short>(isAllSent ? POLLIN : POLLIN | POLLOUT), 0};
        if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) == 0) {
            return;
        }
        const bool isOver = recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT) == 0;
        if (isOver || !writeSome()) {
            return;
        }
    }
}

} // namespace velloran::platform::sway
