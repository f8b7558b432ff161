#include "harness/FakePortal.h"

#include "base/fatal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>

#include <utility>

namespace velloran::tests {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interfaces = QStringLiteral("org.freedesktop.portal.");

/// The toolkit knows its connections by name.
QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("fake portal %1").arg(++count);
}

} // namespace

FakePortal::FakePortal(const std::string& busAddress, SettingGroups settings, Manner manner)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), nextConnectionName())),
      settings_(std::move(settings)),
      manner_(manner) {
    qDBusRegisterMetaType<SettingGroups>();
    if (!bus_.registerVirtualObject(objectPath, this, QDBusConnection::SubPath) || !bus_.registerService(service)) {
        fatalError("The bus takes no portal");
    }
}

FakePortal::~FakePortal() {
    vanish();
}

void FakePortal::respond(uint response, const QVariantMap& results) {
    signal(request.path, interfaces + "Request", "Response", {response, results});
}

void FakePortal::closeSession(const QString& path) {
    signal(path, interfaces + "Session", "Closed", {});
}

void FakePortal::tellOfShortcut(const QString& what, const QString& session, const QString& identifier) {
    signal(objectPath, interfaces + "GlobalShortcuts", what,
           {QVariant::fromValue(QDBusObjectPath(session)), identifier, qulonglong{1}, QVariantMap()});
}

void FakePortal::changeShortcuts(const QString& session, const QVariant& shortcuts) {
    signal(objectPath, interfaces + "GlobalShortcuts", "ShortcutsChanged",
           {QVariant::fromValue(QDBusObjectPath(session)), shortcuts});
}

void FakePortal::change(const QString& group, const QString& key, const QVariant& value) {
    settings_[group][key] = value;
    signal(objectPath, interfaces + "Settings", "SettingChanged",
           {group, key, QVariant::fromValue(QDBusVariant(value))});
}

void FakePortal::vanish() {
    const QString name = bus_.name();
    if (name.isEmpty()) {
        return;
    }
    bus_.unregisterService(service);
    bus_.unregisterObject(objectPath, QDBusConnection::UnregisterTree);
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

QString FakePortal::introspect(const QString& /*path*/) const {
    return {};
}

bool FakePortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    const QString method = message.member();
    calls.append(method == "Get" ? message.arguments().value(0).toString() : method);
    if (manner_ == Manner::staysSilent) {
        message.setDelayedReply(true);
    } else if (method == "Get" && (version == 0 || missing.contains(message.arguments().value(0).toString()))) {
        bus_.send(message.createErrorReply(QDBusError::InvalidArgs, "no such interface"));
    } else if (method == "Get") {
        answer(message, {QVariant::fromValue(QDBusVariant(version))});
    } else if (method == "ConnectToEIS" && makeInput) {
        QDBusUnixFileDescriptor descriptor;
        descriptor.giveFileDescriptor(makeInput());
        answer(message, {QVariant::fromValue(descriptor)});
    } else if (method == "ConnectToEIS") {
        bus_.send(message.createErrorReply(inputError, "not here"));
    } else if (method == "NotifyPointerButton") {
        takeButton(message);
    } else if (method == "ReadAll") {
        SettingGroups told;
        for (const QString& group : message.arguments().value(0).toStringList()) {
            if (settings_.contains(group)) {
                told.insert(group, settings_.value(group));
            }
        }
        answer(message, {QVariant::fromValue(told)});
    } else if (method == "Register" && !takesNames) {
        bus_.send(message.createErrorReply(QDBusError::UnknownMethod, "no such interface"));
    } else if (method == "Register") {
        names.append(message.arguments().value(0).toString());
        answer(message, {});
    } else if (method == "Close") {
        closed.append(message.path());
    } else {
        takeRequest(message);
    }
    return true;
}

void FakePortal::answer(const QDBusMessage& message, const QVariantList& values) {
    if (manner_ == Manner::refuses && message.member() != "Get") {
        bus_.send(message.createErrorReply(QDBusError::AccessDenied, "not for you"));
    } else {
        bus_.send(message.createReply(values));
    }
}

void FakePortal::takeRequest(const QDBusMessage& message) {
    request.method = message.member();
    request.arguments = message.arguments();
    request.options = qdbus_cast<QVariantMap>(request.arguments.takeLast());
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    const QString token =
        usesOwnPaths ? QStringLiteral("t%1").arg(requests) : request.options.value("handle_token").toString();
    request.path = QStringLiteral("%1/request/%2/%3").arg(objectPath, sender, token);
    ++requests;
    if (requestError) {
        bus_.send(message.createErrorReply(*requestError, "not now"));
        return;
    }
    if (manner_ == Manner::hangs) {
        message.setDelayedReply(true);
        return;
    }
    if (manner_ == Manner::hurries) {
        respond(0);
    }
    answer(message, namesNoPath ? QVariantList() : QVariantList{QVariant::fromValue(QDBusObjectPath(request.path))});
}

void FakePortal::takeButton(const QDBusMessage& message) {
    buttons.append(QStringLiteral("%1 %2")
                       .arg(message.arguments().value(2).toInt())
                       .arg(message.arguments().value(3).toUInt() == 1 ? "down" : "up"));
    if (buttonManner == Buttons::refused) {
        bus_.send(message.createErrorReply(QDBusError::AccessDenied, "Invalid session"));
    } else if (buttonManner == Buttons::held) {
        message.setDelayedReply(true);
        held_.append(message);
    } else {
        bus_.send(message.createReply());
    }
}

void FakePortal::letButtonsGo() {
    buttonManner = Buttons::taken;
    for (const QDBusMessage& message : std::exchange(held_, {})) {
        bus_.send(message.createReply());
    }
}

void FakePortal::signal(const QString& path, const QString& interface, const QString& name,
                        const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
    message.setArguments(arguments);
    bus_.send(message);
}

} // namespace velloran::tests
