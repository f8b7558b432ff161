#include "platform/portal/InputPipe.h"

#include "async/hasUnread.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <vector>

namespace velloran::platform::portal {

namespace {

/// More than a click, and than anything that a desktop says at once.
constexpr std::size_t longestPiece = 16 * 1024;
constexpr std::size_t mostDescriptors = 28;

void closeIfOpen(int descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
    }
}

bool isNothingThere(ssize_t count) {
    return count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
}

std::vector<int> descriptorsIn(msghdr& message) {
    std::vector<int> found;
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level == SOL_SOCKET && header->cmsg_type == SCM_RIGHTS) {
            const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
            const std::size_t before = found.size();
            found.resize(before + count);
            std::memcpy(found.data() + before, CMSG_DATA(header), count * sizeof(int));
        }
    }
    return found;
}

} // namespace

InputPipe::InputPipe(int desktop) : desktop_(desktop) {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) == 0) {
        end_ = ends[0];
        libraryEnd_ = ends[1];
    }
}

InputPipe::~InputPipe() {
    closeIfOpen(desktop_);
    closeIfOpen(end_);
    closeIfOpen(libraryEnd_);
}

bool InputPipe::send() {
    std::array<char, longestPiece> piece{};
    while (true) {
        const ssize_t count = recv(end_, piece.data(), piece.size(), MSG_DONTWAIT);
        if (count <= 0) {
            // The library may have closed its end behind what it wrote.
            return count == 0 || isNothingThere(count);
        }
        if (::send(desktop_, piece.data(), static_cast<std::size_t>(count), MSG_DONTWAIT | MSG_NOSIGNAL) != count) {
            return false;
        }
    }
}

bool InputPipe::isKeeping() const {
    return hasUnread(desktop_);
}

bool InputPipe::receive() {
    std::array<char, longestPiece> piece{};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(mostDescriptors * sizeof(int))> control{};
    while (true) {
        iovec part{piece.data(), piece.size()};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t count = recvmsg(desktop_, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
        if (count <= 0) {
            return isNothingThere(count);
        }
        const std::vector<int> descriptors = descriptorsIn(message);
        part.iov_len = static_cast<std::size_t>(count);
        const bool isHandedOn = sendmsg(end_, &message, MSG_DONTWAIT | MSG_NOSIGNAL) == count;
        std::for_each(descriptors.begin(), descriptors.end(), closeIfOpen);
        if (!isHandedOn) {
            return false;
        }
    }
}

} // namespace velloran::platform::portal
