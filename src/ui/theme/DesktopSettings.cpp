#include "ui/theme/DesktopSettings.h"

#include "platform/bus/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMap>
#include <QVariantMap>

#include <utility>

namespace velloran {

namespace {

using platform::bus::SessionBus;

using Groups = QMap<QString, QVariantMap>;

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// A setting comes wrapped once or twice, by the portal's age.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

DesktopSettings::DesktopSettings(QStringList groups, QObject* parent) : QObject(parent), groups_(std::move(groups)) {
    const auto* const bus = SessionBus::current();
    if (bus == nullptr) {
        return;
    }
    qDBusRegisterMetaType<Groups>();
    // A slot with an argument of a type that the toolkit has not met yet is not connected.
    qRegisterMetaType<QDBusVariant>();
    connect(bus, &SessionBus::connected, this, &DesktopSettings::listen);
    listen();
}

void DesktopSettings::listen() {
    QDBusConnection bus = SessionBus::current()->connection();
    if (!bus.isConnected()) {
        return;
    }
    if (!bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QString, QString, QDBusVariant)))) {
        qWarning("Later changes of the desktop's settings cannot be followed.");
    }
    // A portal that starts anew may have missed changes.
    portalLife_ = std::make_unique<QDBusServiceWatcher>(portalService, bus, QDBusServiceWatcher::WatchForRegistration);
    connect(portalLife_.get(), &QDBusServiceWatcher::serviceRegistered, this, &DesktopSettings::ask);
    ask();
}

void DesktopSettings::ask() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    question << groups_;
    auto* const answer = new QDBusPendingCallWatcher(SessionBus::current()->connection().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<Groups> reply = *answer;
        if (!reply.isValid()) {
            return;
        }
        const Groups groups = reply.value();
        for (auto group = groups.begin(); group != groups.end(); ++group) {
            for (auto setting = group->begin(); setting != group->end(); ++setting) {
                tell(group.key(), setting.key(), setting.value());
            }
        }
        emit upToDate();
    });
}

void DesktopSettings::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    tell(group, key, value.variant());
    emit upToDate();
}

/// The portal tells changes of all settings, and may answer with more than it was asked for.
void DesktopSettings::tell(const QString& group, const QString& key, const QVariant& value) {
    if (groups_.contains(group)) {
        emit told(group, key, unwrapped(value));
    }
}

} // namespace velloran
