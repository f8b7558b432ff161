#include "platform/bus/busProbe.h"

#include <QByteArrayView>
#include <QDeadlineTimer>
#include <QFile>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>

namespace velloran::platform::bus {

namespace {

using namespace std::chrono_literals;

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr auto longestSearch = 2s;

/// The first call of every client, written out: to the bus itself, little-endian, serial number 1, no arguments.
constexpr char greeting[] = "l\1\0\1\0\0\0\0\1\0\0\0\x6d\0\0\0"
                            "\1\1o\0\x15\0\0\0/org/freedesktop/DBus\0\0\0"
                            "\3\1s\0\5\0\0\0Hello\0\0\0"
                            "\2\1s\0\x14\0\0\0org.freedesktop.DBus\0\0\0\0"
                            "\6\1s\0\x14\0\0\0org.freedesktop.DBus\0\0\0";

class Socket {
public:
    Socket() : descriptor_(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {}

    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    ~Socket() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

/// A place as the system calls take it.
struct SocketName {
    sockaddr_un address{};
    socklen_t size = 0;
};

std::optional<SocketName> toSocketName(const QByteArray& path, bool isAbstract) {
    SocketName name;
    name.address.sun_family = AF_UNIX;
    // An abstract name begins with a zero and has none at its end.
    const QByteArray text = isAbstract ? '\0' + path : path + '\0';
    if (path.isEmpty() || static_cast<std::size_t>(text.size()) > sizeof name.address.sun_path) {
        return std::nullopt;
    }
    std::memcpy(name.address.sun_path, text.constData(), static_cast<std::size_t>(text.size()));
    name.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(text.size()));
    return name;
}

/// Reads one of the addresses of a bus, as "unix:path=/run/bus,guid=…".
std::optional<SocketName> parseAddress(const QByteArray& address) {
    constexpr QByteArrayView transport = "unix:";
    if (!address.startsWith(transport)) {
        return std::nullopt;
    }
    for (const QByteArray& entry : address.mid(transport.size()).split(',')) {
        const qsizetype separator = entry.indexOf('=');
        const QByteArray key = entry.left(separator);
        if (key == "path" || key == "abstract") {
            return toSocketName(QByteArray::fromPercentEncoding(entry.mid(separator + 1)), key == "abstract");
        }
    }
    return std::nullopt;
}

/// Waits until the socket is ready; false when the time is up.
bool waitFor(const Socket& socket, short events, const QDeadlineTimer& deadline) {
    pollfd ready{socket.descriptor(), events, 0};
    int count = -1;
    do {
        count = poll(&ready, 1, static_cast<int>(deadline.remainingTime()));
    } while (count < 0 && errno == EINTR);
    return count > 0;
}

/// How far connecting came.
BusState connectTo(const SocketName& name, const Socket& socket, const QDeadlineTimer& deadline) {
    while (connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&name.address), name.size) != 0) {
        if (errno != EAGAIN && errno != EINTR) {
            return BusState::absent;
        }
        // The queue of those who wait to be taken is full, and the system does not tell when it no longer is.
        if (deadline.hasExpired()) {
            return BusState::silent;
        }
        poll(nullptr, 0, static_cast<int>(std::min<qint64>(20, deadline.remainingTime())));
    }
    return BusState::answers;
}

/// Less than the least buffer of a socket, so it goes out as one.
bool sendAll(const Socket& socket, QByteArrayView bytes) {
    return send(socket.descriptor(), bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) ==
           bytes.size();
}

/// What comes next; nothing when nothing comes in time or the other end has closed.
QByteArray receive(const Socket& socket, const QDeadlineTimer& deadline) {
    char bytes[512];
    if (!waitFor(socket, POLLIN, deadline)) {
        return {};
    }
    const ssize_t count = recv(socket.descriptor(), bytes, sizeof bytes, 0);
    return {bytes, std::max<ssize_t>(0, count)};
}

/// Whether the other end lets this user in and answers a call.
bool greet(const Socket& socket, const QDeadlineTimer& deadline) {
    const QByteArray user = QByteArray::number(getuid()).toHex();
    if (!sendAll(socket, QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n")) {
        return false;
    }
    QByteArray line;
    while (!line.endsWith("\r\n")) {
        const QByteArray bytes = receive(socket, deadline);
        if (bytes.isEmpty()) {
            return false;
        }
        line += bytes;
    }
    if (!line.startsWith("OK ")) {
        // It does speak, and how it lets its clients in is the toolkit's business.
        return true;
    }
    return sendAll(socket, QByteArray("BEGIN\r\n") + QByteArray(greeting, sizeof greeting)) &&
           !receive(socket, deadline).isEmpty();
}

BusState probeSocket(const SocketName& name, const QDeadlineTimer& deadline) {
    const Socket socket;
    const BusState connection = connectTo(name, socket, deadline);
    if (connection != BusState::answers) {
        return connection;
    }
    return greet(socket, deadline) ? BusState::answers : BusState::silent;
}

/// Where the bus's own library looks.
QByteArray sessionBusAddress() {
    QByteArray named = qgetenv(addressVariable);
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray path = folder + "/bus";
    if (!named.isEmpty() || folder.isEmpty() || !QFile::exists(QFile::decodeName(path))) {
        return named;
    }
    return "unix:path=" + path.toPercentEncoding("/");
}

} // namespace

BusState probeBus(const QByteArray& address, std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    // Of several addresses the first counts at which anybody is.
    for (const QByteArray& one : address.split(';')) {
        const auto name = parseAddress(one);
        const BusState state = name ? probeSocket(*name, deadline) : BusState::answers;
        if (state != BusState::absent) {
            return state;
        }
    }
    return BusState::absent;
}

BusPlace findSessionBus() {
    const QByteArray address = sessionBusAddress();
    if (address.isEmpty()) {
        return {};
    }
    const BusState state = probeBus(address, longestSearch);
    if (state == BusState::silent) {
        // Not merely unset: then another one would be looked for, or started.
        qputenv(addressVariable, "disabled:");
    }
    return {address, state};
}

void offerSessionBus(const QByteArray& address) {
    qputenv(addressVariable, address);
}

} // namespace velloran::platform::bus
