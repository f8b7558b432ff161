#include "harness/SilentPortal.h"

#include "base/fatal.h"

#include <QDBusMessage>

namespace velloran::tests {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const auto connectionName = QStringLiteral("silent portal");

} // namespace

SilentPortal::SilentPortal(const std::string& busAddress)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), connectionName)) {
    if (!bus_.registerVirtualObject(objectPath, this) || !bus_.registerService(service)) {
        fatalError("The bus takes no portal");
    }
}

SilentPortal::~SilentPortal() {
    bus_.unregisterService(service);
    bus_.unregisterObject(objectPath);
    QDBusConnection::disconnectFromBus(connectionName);
}

QString SilentPortal::introspect(const QString& /*path*/) const {
    return {};
}

bool SilentPortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    message.setDelayedReply(true);
    isAsked_ = isAsked_ || message.arguments().value(0).toString() == chooserInterface;
    return true;
}

} // namespace velloran::tests
