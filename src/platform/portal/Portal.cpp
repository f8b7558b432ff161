#include "platform/portal/Portal.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace velloran::platform::portal {

namespace {

const auto portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const auto busName = QStringLiteral("org.freedesktop.DBus");
const auto busPath = QStringLiteral("/org/freedesktop/DBus");

QDBusMessage callToBus(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(busName, busPath, busName, method);
    message.setArguments(arguments);
    return message;
}

QDBusMessage messageOf(const PortalCall& call) {
    QDBusMessage message = QDBusMessage::createMethodCall(portalName, call.path, call.interface, call.method);
    message.setArguments(call.arguments);
    return message;
}

/// Whether nobody there has heard of what was called.
bool isUnknown(QDBusError::ErrorType error) {
    return error == QDBusError::UnknownMethod || error == QDBusError::UnknownInterface;
}

/// The watcher belongs to nobody: who is told may end whoever asked.
void tellWhenDone(const QDBusPendingCall& call, QObject* context, std::function<void(const QDBusMessage&)> done) {
    auto* const watcher = new QDBusPendingCallWatcher(call);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, &QObject::deleteLater);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [watcher, done = std::move(done)] { done(watcher->reply()); });
}

} // namespace

bool isSilence(const QDBusMessage& answer) {
    switch (QDBusError(answer).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
        return true;
    default:
        return false;
    }
}

Portal::Portal(bus::SessionBus& bus, QString applicationName)
    : bus_(bus), applicationName_(std::move(applicationName)) {
    connect(&bus_, &bus::SessionBus::connected, this, &Portal::follow);
    connect(&bus_, &bus::SessionBus::lost, this, [this] { setOwner({}); });
    follow();
}

void Portal::call(const PortalCall& call, QObject* context, std::function<void(const QDBusMessage&)> done) {
    const QDBusConnection bus = bus_.connection();
    tellWhenDone(bus.isConnected() ? bus.asyncCall(messageOf(call), static_cast<int>(call.longestWait.count()))
                                   : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, {})),
                 context, std::move(done));
}

void Portal::askVersion(const QString& interface, QObject* context, std::function<void(uint version)> done) {
    PortalCall question{QStringLiteral("org.freedesktop.DBus.Properties"),
                        QStringLiteral("Get"),
                        {interface, QStringLiteral("version")}};
    // A desktop that is only starting may take its time, and until then there is nothing else to do.
    question.longestWait = std::chrono::milliseconds(std::numeric_limits<int>::max());
    call(question, context, [this, owner = owner_, done = std::move(done)](const QDBusMessage& answer) {
        if (owner == owner_) {
            done(answer.arguments().value(0).value<QDBusVariant>().variant().toUInt());
        }
    });
}

void Portal::askForOwner(const QString& name, QObject* context, std::function<void(bool isOwned)> done) {
    const QDBusConnection bus = bus_.connection();
    if (!bus.isConnected()) {
        return;
    }
    tellWhenDone(bus.asyncCall(callToBus(QStringLiteral("NameHasOwner"), {name})), context,
                 [done = std::move(done)](const QDBusMessage& answer) {
                     if (answer.type() == QDBusMessage::ReplyMessage) {
                         done(answer.arguments().value(0).toBool());
                     }
                 });
}

void Portal::tell(const PortalCall& call) {
    QDBusMessage message = messageOf(call);
    message.setAutoStartService(false);
    bus_.connection().send(message);
}

/// Whatever name the sender is given, its owner is looked up by the toolkit, which waits for the bus. Only of the bus's
/// own name it needs no telling.
void Portal::listen(const QString& path, const QString& interface, const QString& signal, QObject* receiver,
                    const char* slot, const QString& types) {
    bus_.connection().connect(QString(), path, interface, signal, types, receiver, slot);
}

void Portal::listenToName(const QString& name, QObject* receiver, const char* slot) {
    bus_.connection().connect(busName, busPath, busName, QStringLiteral("NameOwnerChanged"), {name},
                              QStringLiteral("sss"), receiver, slot);
}

QString Portal::clientName() const {
    return bus_.connection().baseService().mid(1).replace(u'.', u'_');
}

/// Asked in one go: the change is heard of when the bus starts it, and the question answered when it runs already.
void Portal::follow() {
    QDBusConnection bus = bus_.connection();
    if (!bus.isConnected()) {
        return;
    }
    listenToName(portalName, this, SLOT(ownerChanged(QString, QString, QString)));
    tellWhenDone(bus.asyncCall(callToBus(QStringLiteral("StartServiceByName"), {portalName, 0U})), this,
                 [this](const QDBusMessage& answer) {
                     if (answer.type() != QDBusMessage::ReplyMessage) {
                         lookForRunningOne();
                     }
                 });
    tellWhenDone(bus.asyncCall(callToBus(QStringLiteral("GetNameOwner"), {portalName})), this,
                 [this](const QDBusMessage& answer) {
                     if (answer.type() == QDBusMessage::ReplyMessage) {
                         setOwner(answer.arguments().value(0).toString());
                     }
                 });
}

/// One that the bus cannot start may be there all the same.
void Portal::lookForRunningOne() {
    askForOwner(portalName, this, [this](bool isOwned) {
        if (owner_.isEmpty() && !isOwned) {
            emit missing();
        }
    });
}

void Portal::ownerChanged(const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
    setOwner(newOwner);
}

void Portal::setOwner(const QString& owner) {
    if (owner == owner_) {
        return;
    }
    owner_ = owner;
    nameError_.clear();
    takesNames_ = true;
    if (std::exchange(isThere_, false)) {
        emit vanished();
    }
    // Unless that has changed it again.
    if (owner.isEmpty() || owner != owner_) {
        return;
    }
    if (applicationName_.isEmpty()) {
        announce();
    } else {
        introduce();
    }
}

/// Portals of old do not know of names, and go by what they see.
void Portal::introduce() {
    call({QStringLiteral("org.freedesktop.host.portal.Registry"),
          QStringLiteral("Register"),
          {applicationName_, QVariantMap()}},
         this, [this, owner = owner_](const QDBusMessage& answer) {
             if (owner == owner_) {
                 nameError_ = answer.errorMessage();
                 takesNames_ = !isUnknown(QDBusError(answer).type());
                 announce();
             }
         });
}

void Portal::announce() {
    isThere_ = true;
    emit appeared();
}

} // namespace velloran::platform::portal
