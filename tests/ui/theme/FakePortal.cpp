#include "ui/theme/FakePortal.h"

#include <QDBusMetaType>

#include <utility>

namespace velloran::tests {

namespace {

const auto connectionName = QStringLiteral("portal");
const auto serviceName = QStringLiteral("org.freedesktop.portal.Desktop");

} // namespace

FakePortal::FakePortal(SettingGroups settings, Manner manner)
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)),
      settings_(std::move(settings)),
      manner_(manner) {
    qDBusRegisterMetaType<SettingGroups>();
    bus_.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    bus_.registerService(serviceName);
}

FakePortal::~FakePortal() {
    bus_.unregisterService(serviceName);
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(connectionName);
}

void FakePortal::change(const QString& group, const QString& key, const QVariant& value) {
    settings_[group][key] = value;
    emit SettingChanged(group, key, QDBusVariant(value));
}

SettingGroups FakePortal::ReadAll(const QStringList& groups) {
    ++questionCount_;
    emit asked();
    if (manner_ == Manner::staysSilent) {
        setDelayedReply(true);
        return {};
    }
    SettingGroups answer;
    for (const QString& group : groups) {
        if (settings_.contains(group)) {
            answer.insert(group, settings_.value(group));
        }
    }
    return answer;
}

} // namespace velloran::tests
