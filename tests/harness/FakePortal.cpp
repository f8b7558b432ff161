#include "harness/FakePortal.h"

#include "base/fatal.h"

#include <QDBusMessage>
#include <QDBusMetaType>

namespace velloran::tests {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto connectionName = QStringLiteral("fake portal");

} // namespace

FakePortal::FakePortal(const std::string& busAddress)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName)) {
    qDBusRegisterMetaType<SettingGroups>();
    new FakeSettings(*this);
    new FakeFileChooser(*this);
    if (!bus_.registerObject(objectPath, this) || !bus_.registerService(service)) {
        fatalError("The bus takes no portal");
    }
}

FakePortal::~FakePortal() {
    vanish();
}

void FakePortal::respond(uint response, const QStringList& uris) {
    QDBusMessage signal = QDBusMessage::createSignal(request.path, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    signal << response << QVariantMap{{QStringLiteral("uris"), uris}};
    bus_.send(signal);
}

void FakePortal::changeButtonLayout(const QString& layout) {
    buttonLayout = layout;
    QDBusMessage signal = QDBusMessage::createSignal(objectPath, QStringLiteral("org.freedesktop.portal.Settings"),
                                                     QStringLiteral("SettingChanged"));
    signal << QStringLiteral("org.gnome.desktop.wm.preferences") << QStringLiteral("button-layout")
           << QVariant::fromValue(QDBusVariant(layout));
    bus_.send(signal);
}

void FakePortal::vanish() {
    bus_.unregisterService(service);
    bus_.unregisterObject(objectPath);
    QDBusConnection::disconnectFromBus(connectionName);
}

SettingGroups FakeSettings::ReadAll(const QStringList& groups) {
    const auto group = QStringLiteral("org.gnome.desktop.wm.preferences");
    if (!groups.contains(group) || portal_.buttonLayout.isEmpty()) {
        return {};
    }
    return {{group, {{QStringLiteral("button-layout"), portal_.buttonLayout}}}};
}

QDBusObjectPath FakeFileChooser::OpenFile(const QString& parentWindow, const QString& title, const QVariantMap& options,
                                          const QDBusMessage& message) {
    return take("OpenFile", parentWindow, title, options, message);
}

QDBusObjectPath FakeFileChooser::SaveFile(const QString& parentWindow, const QString& title, const QVariantMap& options,
                                          const QDBusMessage& message) {
    return take("SaveFile", parentWindow, title, options, message);
}

QDBusObjectPath FakeFileChooser::take(const QString& method, const QString& parentWindow, const QString& title,
                                      const QVariantMap& options, const QDBusMessage& message) {
    const QString sender = message.service().mid(1).replace(u'.', u'_');
    const QString token =
        portal_.usesOwnPaths ? QStringLiteral("t%1").arg(portal_.requests) : options.value("handle_token").toString();
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
    portal_.request = {method, parentWindow, title, options, path};
    ++portal_.requests;
    return QDBusObjectPath(path);
}

} // namespace velloran::tests
