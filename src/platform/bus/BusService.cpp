#include "platform/bus/BusService.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QPointer>

#include <utility>

namespace velloran::platform::bus {

namespace {

const auto busName = QStringLiteral("org.freedesktop.DBus");
const auto busPath = QStringLiteral("/org/freedesktop/DBus");

/// The watcher belongs to nobody: who is told may end whoever asked.
void tellWhenDone(const QDBusPendingCall& call, QObject* context, BusService::Answered done) {
    auto* const watcher = new QDBusPendingCallWatcher(call);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [watcher, done = std::move(done)] { done(watcher->reply()); });
}

} // namespace

BusService::BusService(SessionBus& bus, QString name) : bus_(bus), name_(std::move(name)) {
    connect(&bus_, &SessionBus::connected, this, &BusService::follow);
    connect(&bus_, &SessionBus::lost, this, [this] { setOwner({}); });
    follow();
}

/// Heard of before it is asked for, so that nothing is missed between the two.
void BusService::follow() {
    QDBusConnection bus = bus_.connection();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(busName, busPath, busName, QStringLiteral("NameOwnerChanged"), {name_}, QStringLiteral("sss"), this,
                SLOT(ownerChanged(QString, QString, QString)));
    QDBusMessage question = QDBusMessage::createMethodCall(busName, busPath, busName, QStringLiteral("GetNameOwner"));
    question.setArguments({name_});
    tellWhenDone(bus.asyncCall(question), this, [this](const QDBusMessage& answer) {
        const bool isNew = !std::exchange(isKnown_, true);
        if (answer.type() == QDBusMessage::ReplyMessage) {
            setOwner(answer.arguments().value(0).toString());
        } else if (isNew && !isThere()) {
            emit missing();
        }
    });
}

void BusService::ownerChanged(const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
    isKnown_ = true;
    setOwner(newOwner);
}

void BusService::setOwner(const QString& owner) {
    if (owner == owner_) {
        return;
    }
    if (!std::exchange(owner_, owner).isEmpty()) {
        emit vanished();
    }
    // Unless that has changed it again.
    if (!owner.isEmpty() && owner == owner_) {
        emit appeared();
    }
}

/// To that one alone: another that has the name by then is told for itself.
QDBusMessage BusService::messageOf(const Call& call) const {
    QDBusMessage message = QDBusMessage::createMethodCall(owner_, call.path, call.interface, call.method);
    message.setArguments(call.arguments);
    message.setAutoStartService(false);
    return message;
}

void BusService::call(const Call& call, QObject* context, Answered answered) {
    const QDBusConnection bus = bus_.connection();
    tellWhenDone(bus.isConnected() && isThere() ? bus.asyncCall(messageOf(call))
                                                : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, {})),
                 context,
                 [this, self = QPointer(this), owner = owner_, answered = std::move(answered)](const auto& answer) {
                     if (self && owner == owner_) {
                         answered(answer);
                     }
                 });
}

void BusService::tell(const Call& call) {
    if (isThere()) {
        bus_.connection().send(messageOf(call));
    }
}

/// Whatever name the sender is given, its owner is looked up by the toolkit, which waits for the bus.
void BusService::listen(const QString& path, const QString& interface, const QString& signal, QObject* receiver,
                        const char* slot) {
    bus_.connection().connect(QString(), path, interface, signal, receiver, slot);
}

} // namespace velloran::platform::bus
