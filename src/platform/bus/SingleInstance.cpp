#include "platform/bus/SingleInstance.h"

#include "platform/bus/ApplicationObject.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace velloran::platform::bus {

namespace {

const auto applicationName = QStringLiteral("app.velloran.Velloran");
const auto applicationPath = QStringLiteral("/app/velloran/Velloran");
const auto applicationInterface = QStringLiteral("org.freedesktop.Application");

constexpr int longestWaitForBus = 2'000;    // milliseconds
constexpr int longestWaitForOther = 10'000; // milliseconds

/// What the wait for a change ends with when there was none.
constexpr int waitedLongEnough = 1;

/// The bus's answer to a request for a name that another one has.
constexpr uint isTaken = 3;

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

/// Whether the other one may have ended before it answered, or be just about to, so that its name can be had.
bool mayHaveEnded(const QDBusMessage& answer) {
    switch (QDBusError(answer).type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::NoReply:
    case QDBusError::Disconnected:
    // While it ends, the object goes before the name does.
    case QDBusError::UnknownObject:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownMethod:
        return true;
    default:
        return answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
    }
}

} // namespace

SingleInstance::SingleInstance(SessionBus& bus) : bus_(bus) {
    auto* const object = new ApplicationObject(this);
    connect(object, &ApplicationObject::activated, this, &SingleInstance::activated);
    connect(object, &ApplicationObject::actionActivated, this, &SingleInstance::actionActivated);
    connect(&bus_, &SessionBus::connected, this, &SingleInstance::takeName);
}

SingleInstance::Claim SingleInstance::claim(const ActivationToken& token) {
    listen();
    const QDBusConnection bus = bus_.connection();
    const QDeadlineTimer deadline(longestWaitForOther);
    // Before the first question, so that no change is missed.
    const QDBusServiceWatcher watcher(applicationName, bus, QDBusServiceWatcher::WatchForOwnerChange);
    QEventLoop wait;
    connect(&watcher, &QDBusServiceWatcher::serviceOwnerChanged, &wait, &QEventLoop::quit);
    connect(&bus_, &SessionBus::lost, &wait, &QEventLoop::quit);
    while (bus.isConnected() && !deadline.hasExpired()) {
        const QDBusMessage standing = bus.call(requestForName(), QDBus::Block, longestWaitForBus);
        if (standing.type() != QDBusMessage::ReplyMessage || standing.arguments().value(0).toUInt() != isTaken) {
            return Claim::first;
        }
        const int patience = std::max(1, static_cast<int>(deadline.remainingTime()));
        const QDBusMessage answer = bus.call(callToFirst(token), QDBus::Block, patience);
        if (answer.type() == QDBusMessage::ReplyMessage) {
            return Claim::handedOver;
        }
        if (!mayHaveEnded(answer)) {
            return Claim::unanswered;
        }
        // Whoever has the name may claim to have ended, and keep it. The timer may be up before the deadline is, so
        // that the time is over when it says so.
        QTimer::singleShot(static_cast<int>(deadline.remainingTime()), &wait, [&wait] { wait.exit(waitedLongEnough); });
        if (wait.exec() == waitedLongEnough) {
            break;
        }
    }
    return bus.isConnected() ? Claim::unanswered : Claim::first;
}

void SingleInstance::serve(Requests requests) {
    requests_ = std::move(requests);
    markStartOver();
}

/// The object is there before the name is: whoever sees the name is answered.
void SingleInstance::listen() {
    bus_.connection().registerObject(applicationPath, this, QDBusConnection::ExportAdaptors);
}

/// Somebody else may have the name by now. Both go on: a run is not ended for that.
void SingleInstance::takeName() {
    listen();
    bus_.connection().asyncCall(requestForName(), longestWaitForBus);
}

/// Calls that the bus kept for a program that it had to start come right behind the name, so they are all here when the
/// answer to a later question is.
void SingleInstance::markStartOver() {
    const QDBusConnection bus = bus_.connection();
    if (!bus.isConnected()) {
        isStartOver_ = true;
        return;
    }
    auto* const answer =
        new QDBusPendingCallWatcher(bus.asyncCall(callToBus(QStringLiteral("GetId")), longestWaitForBus), this);
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

} // namespace velloran::platform::bus
