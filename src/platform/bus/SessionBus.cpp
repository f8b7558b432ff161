#include "platform/bus/SessionBus.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace velloran::platform::bus {

namespace {

using namespace std::chrono_literals;

constexpr auto firstRetry = 500ms;
constexpr auto longestRetry = 60s;
/// Short, because quitting waits for it.
constexpr auto longestProbe = 500ms;

QString connectionName(int number) {
    return QStringLiteral("velloran-%1").arg(number);
}

QDBusConnection connectToBus(const QByteArray& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(QString::fromUtf8(address), name);
}

} // namespace

SessionBus* SessionBus::current_ = nullptr;

SessionBus::SessionBus(BusPlace place) : address_(std::move(place.address)), connection_(QString()) {
    retry_.setSingleShot(true);
    retry_.setInterval(firstRetry);
    connect(&retry_, &QTimer::timeout, this, &SessionBus::reconnect);
    current_ = this;
    if (place.state == BusState::silent) {
        isKeptFromOthers_ = true;
        retry_.start();
    } else {
        connection_ = connectToBus(address_, connectionName(connectionCount_));
        watch();
    }
}

SessionBus::~SessionBus() {
    current_ = nullptr;
    if (connecting_) {
        connecting_->wait();
    }
    const QString name = connection_.name();
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void SessionBus::watch() {
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(loseConnection()));
}

void SessionBus::loseConnection() {
    retry_.setInterval(firstRetry);
    retry_.start();
    emit lost();
}

/// Connecting waits for the bus, so it is done in another thread: clicks go on meanwhile. A silent bus is left alone,
/// since the toolkit would hold up its other connections for it.
void SessionBus::reconnect() {
    const QString oldName = connection_.name();
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(oldName);
    ++connectionCount_;
    connecting_.reset(QThread::create([address = address_, name = connectionName(connectionCount_)] {
        if (address.isEmpty() || probeBus(address, longestProbe) == BusState::answers) {
            connectToBus(address, name);
        }
    }));
    connect(connecting_.get(), &QThread::finished, this, &SessionBus::reconnected);
    connecting_->start();
}

void SessionBus::reconnected() {
    connecting_->wait();
    connecting_.reset();
    connection_ = QDBusConnection(connectionName(connectionCount_));
    if (!connection_.isConnected()) {
        retry_.setInterval(std::min<std::chrono::milliseconds>(retry_.intervalAsDuration() * 2, longestRetry));
        retry_.start();
        return;
    }
    watch();
    if (std::exchange(isKeptFromOthers_, false)) {
        offerSessionBus(address_);
    }
    emit connected();
}

} // namespace velloran::platform::bus
