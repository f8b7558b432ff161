#include "platform/gnome/PressCommand.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include "platform/bus/ApplicationObject.h"

namespace velloran::platform::gnome {

namespace {

/// Not the program's name, for which the bus would start it.
const auto ourName = QStringLiteral("app.velloran.Velloran.Hotkey");
const auto ourPath = QStringLiteral("/app/velloran/Velloran");
const auto pressAction = QStringLiteral("press-hotkey");

} // namespace

PressCommand::PressCommand(bus::SessionBus& bus) : bus_(bus) {
    auto* const object = new bus::ApplicationObject(this);
    connect(object, &bus::ApplicationObject::actionActivated, this, [this](const QString& name) {
        if (name == pressAction) {
            emit pressed();
        }
    });
}

QString PressCommand::text() {
    return QStringLiteral("gdbus call --session --timeout 5 --dest %1 --object-path %2 "
                          "--method org.freedesktop.Application.ActivateAction %3 [] {}")
        .arg(ourName, ourPath, pressAction);
}

void PressCommand::serve() {
    bus_.connection().registerObject(ourPath, this, QDBusConnection::ExportAdaptors);
    QDBusMessage request =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << ourName << 0U;
    bus_.connection().asyncCall(request);
}

} // namespace velloran::platform::gnome
