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

/// The toolkit knows its connections by name.
QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("velloran-%1").arg(++count);
}

QDBusConnection connectToBus(const QByteArray& address, const QString& name) {
    return address.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                             : QDBusConnection::connectToBus(QString::fromUtf8(address), name);
}

} // namespace

SessionBus::SessionBus(BusPlace place, Start start) : address_(std::move(place.address)), connection_(QString()) {
    retry_.setSingleShot(true);
    retry_.setInterval(firstRetry);
    connect(&retry_, &QTimer::timeout, this, &SessionBus::reconnect);
    if (start == Start::inBackground) {
        if (!address_.isEmpty()) {
            reconnect();
        }
        return;
    }
    isKeptFromOthers_ = place.state == BusState::silent;
    if (!isKeptFromOthers_) {
        connection_ = connectToBus(address_, nextConnectionName());
    }
    if (!watch() && !address_.isEmpty()) {
        retry_.start();
    }
}

SessionBus::~SessionBus() {
    if (connecting_) {
        connecting_->wait();
        QDBusConnection::disconnectFromBus(nextName_);
    }
    const QString name = connection_.name();
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

/// False when there is no connection to be watched, or none any more: of what came before, nothing is told.
bool SessionBus::watch() {
    connection_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                        SLOT(loseConnection()));
    return connection_.isConnected();
}

void SessionBus::loseConnection() {
    if (retry_.isActive() || connecting_) {
        return;
    }
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
    nextName_ = nextConnectionName();
    connecting_.reset(QThread::create([address = address_, name = nextName_] {
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
    connection_ = QDBusConnection(nextName_);
    if (!watch()) {
        retry_.setInterval(std::min<std::chrono::milliseconds>(retry_.intervalAsDuration() * 2, longestRetry));
        retry_.start();
        return;
    }
    if (std::exchange(isKeptFromOthers_, false)) {
        offerSessionBus(address_);
    }
    emit connected();
}

} // namespace velloran::platform::bus
