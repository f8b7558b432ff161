#include "platform/instance/SingleInstance.h"

#include "platform/instance/ApplicationObject.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace velloran::platform::instance {

namespace {

using namespace std::chrono_literals;

const auto applicationName = QStringLiteral("app.velloran.Velloran");
const auto applicationPath = QStringLiteral("/app/velloran/Velloran");
const auto applicationInterface = QStringLiteral("org.freedesktop.Application");

constexpr int longestWaitForBus = 2'000;    // milliseconds
constexpr int longestWaitForOther = 10'000; // milliseconds
constexpr auto firstRetry = 500ms;
constexpr auto longestRetry = 60s;

// What the bus answers to a request for a name.
constexpr uint becameOwner = 1;
constexpr uint isTaken = 3;
constexpr uint wasOwner = 4;

QDBusMessage callToBus(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

QDBusMessage requestForName() {
    constexpr uint doNotQueue = 4;
    QDBusMessage request = callToBus(QStringLiteral("RequestName"));
    request << applicationName << doNotQueue;
    return request;
}

QDBusMessage callToFirst(const ActivationToken& token) {
    QDBusMessage call = QDBusMessage::createMethodCall(applicationName, applicationPath, applicationInterface,
                                                       QStringLiteral("Activate"));
    // The first one may just have ended; then this one takes its place, and no third one is started.
    call.setAutoStartService(false);
    call << token.platformData();
    return call;
}

QString connectionName(int number) {
    return QStringLiteral("velloran-%1").arg(number);
}

} // namespace

SingleInstance::SingleInstance() : bus_(QString()) {
    auto* const object = new ApplicationObject(this);
    connect(object, &ApplicationObject::activated, this, &SingleInstance::activated);
    connect(object, &ApplicationObject::actionActivated, this, &SingleInstance::actionActivated);
    retry_.setSingleShot(true);
    retry_.setInterval(firstRetry);
    connect(&retry_, &QTimer::timeout, this, &SingleInstance::reconnect);
}

SingleInstance::~SingleInstance() {
    if (connecting_) {
        connecting_->wait();
    }
    const QString name = bus_.name();
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

SingleInstance::Claim SingleInstance::claim(const ActivationToken& token) {
    // A connection of its own: the toolkit's common one cannot be made anew when the bus goes away.
    listenOn(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName(connectionCount_)));
    const QDeadlineTimer deadline(longestWaitForOther);
    while (bus_.isConnected() && !deadline.hasExpired()) {
        const QDBusMessage standing = bus_.call(requestForName(), QDBus::Block, longestWaitForBus);
        if (standing.type() != QDBusMessage::ReplyMessage || standing.arguments().value(0).toUInt() != isTaken) {
            return Claim::first;
        }
        const int patience = std::max(1, static_cast<int>(deadline.remainingTime()));
        if (bus_.call(callToFirst(token), QDBus::Block, patience).type() == QDBusMessage::ReplyMessage) {
            return Claim::handedOver;
        }
        // No answer: it has ended meanwhile, and the name can be had, or it hangs.
    }
    return bus_.isConnected() ? Claim::unanswered : Claim::first;
}

void SingleInstance::serve(Requests requests) {
    requests_ = std::move(requests);
    markStartOver();
}

void SingleInstance::listenOn(QDBusConnection bus) {
    bus_ = std::move(bus);
    if (!bus_.isConnected()) {
        return;
    }
    // The object is there before the name is: whoever sees the name is answered.
    bus_.registerObject(applicationPath, this, QDBusConnection::ExportAdaptors);
    bus_.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
                 QStringLiteral("Disconnected"), this, SLOT(lostBus()));
}

/// Calls that the bus kept for a program that it had to start come right behind the name, so they are all here when the
/// answer to a later question is.
void SingleInstance::markStartOver() {
    if (!bus_.isConnected()) {
        isStartOver_ = true;
        return;
    }
    auto* const answer =
        new QDBusPendingCallWatcher(bus_.asyncCall(callToBus(QStringLiteral("GetId")), longestWaitForBus), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        isStartOver_ = true;
    });
}

void SingleInstance::activated(const QVariantMap& platformData) {
    if (requests_.activate) {
        requests_.activate(ActivationToken::fromPlatformData(platformData));
    }
}

void SingleInstance::actionActivated(const QString& name) {
    if (name == QLatin1String("toggle") && isStartOver_ && requests_.toggle) {
        requests_.toggle();
    } else if (name == QLatin1String("quit") && requests_.quit) {
        requests_.quit();
    }
}

void SingleInstance::lostBus() {
    retry_.setInterval(firstRetry);
    retry_.start();
}

/// Connecting waits for the bus, so it is done in another thread: clicks go on meanwhile.
void SingleInstance::reconnect() {
    const QString oldName = bus_.name();
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(oldName);
    ++connectionCount_;
    connecting_.reset(QThread::create([name = connectionName(connectionCount_)] {
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    }));
    connect(connecting_.get(), &QThread::finished, this, &SingleInstance::reconnected);
    connecting_->start();
}

void SingleInstance::reconnected() {
    connecting_->wait();
    connecting_.reset();
    listenOn(QDBusConnection(connectionName(connectionCount_)));
    if (!bus_.isConnected()) {
        retry_.setInterval(std::min<std::chrono::milliseconds>(retry_.intervalAsDuration() * 2, longestRetry));
        retry_.start();
        return;
    }
    // Somebody else may have the name by now. Both go on: a run is not ended for that.
    bus_.asyncCall(requestForName(), longestWaitForBus);
}

} // namespace velloran::platform::instance
