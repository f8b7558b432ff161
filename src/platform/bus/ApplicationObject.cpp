#include "platform/bus/ApplicationObject.h"

namespace velloran::platform::bus {

ApplicationObject::ApplicationObject(QObject* parent) : QDBusAbstractAdaptor(parent) {
    // The two signals are for this program and not for the bus.
    setAutoRelaySignals(false);
}

void ApplicationObject::Activate(const QVariantMap& platform_data) {
    emit activated(platform_data);
}

void ApplicationObject::Open(const QStringList& /*uris*/, const QVariantMap& /*platform_data*/) {}

void ApplicationObject::ActivateAction(const QString& action_name, const QVariantList& /*parameter*/,
                                       const QVariantMap& /*platform_data*/) {
    emit actionActivated(action_name);
}

} // namespace velloran::platform::bus
