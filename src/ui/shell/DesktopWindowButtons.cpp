#include "ui/shell/DesktopWindowButtons.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace velloran {

namespace {

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto preferencesGroup = QStringLiteral("org.gnome.desktop.wm.preferences");
const auto layoutKey = QStringLiteral("button-layout");

bool isPlasma() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(QStringLiteral("KDE"));
}

/// A setting comes wrapped once or twice, by the portal's age.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

QList<QString> namesOf(const std::vector<WindowButton>& buttons) {
    QList<QString> names;
    for (const WindowButton button : buttons) {
        names.append(nameOf(button));
    }
    return names;
}

} // namespace

DesktopWindowButtons::DesktopWindowButtons(QObject* parent) : QObject(parent) {
    if (isPlasma()) {
        readKWinLayout();
    } else {
        askSettingsPortal();
    }
}

QList<QString> DesktopWindowButtons::left() const {
    return namesOf(layout_.left);
}

QList<QString> DesktopWindowButtons::right() const {
    return namesOf(layout_.right);
}

void DesktopWindowButtons::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    const QVariant setting = unwrapped(value.variant());
    if (group == preferencesGroup && key == layoutKey && setting.metaType() == QMetaType::fromType<QString>()) {
        setLayout(WindowButtonLayout::fromNames(setting.toString()));
    }
}

void DesktopWindowButtons::readKWinLayout() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings settings(folder + QStringLiteral("/kwinrc"), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("org.kde.kdecoration2"));
    setLayout(WindowButtonLayout::fromLetters(settings.value(QStringLiteral("ButtonsOnLeft")).toString(),
                                              settings.value(QStringLiteral("ButtonsOnRight"), "IAX").toString()));
}

void DesktopWindowButtons::askSettingsPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("Read"));
    question << preferencesGroup << layoutKey;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        if (reply.isValid()) {
            settingChanged(preferencesGroup, layoutKey, reply.value());
        }
    });
}

void DesktopWindowButtons::setLayout(WindowButtonLayout layout) {
    if (layout == layout_) {
        return;
    }
    layout_ = std::move(layout);
    emit changed();
}

} // namespace velloran
