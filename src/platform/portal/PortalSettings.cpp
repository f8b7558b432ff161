#include "platform/portal/PortalSettings.h"

#include <QDBusArgument>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include <chrono>
#include <utility>

namespace velloran::platform::portal {

namespace {

using Groups = QMap<QString, QVariantMap>;

const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

const auto commonGroup = QStringLiteral("org.freedesktop.appearance");
const auto gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const auto gnomeAccessGroup = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto windowsGroup = QStringLiteral("org.gnome.desktop.wm.preferences");
const auto plasmaGroup = QStringLiteral("org.kde.kdeglobals.KDE");

const auto reducedMotionKey = commonGroup + QStringLiteral("/reduced-motion");
const auto contrastKey = commonGroup + QStringLiteral("/contrast");
const auto animationsKey = gnomeGroup + QStringLiteral("/enable-animations");
const auto textScaleKey = gnomeGroup + QStringLiteral("/text-scaling-factor");
const auto highContrastKey = gnomeAccessGroup + QStringLiteral("/high-contrast");
const auto buttonsKey = windowsGroup + QStringLiteral("/button-layout");
const auto animationFactorKey = plasmaGroup + QStringLiteral("/AnimationDurationFactor");

/// The portal tells changes of all settings, and may answer with more than it was asked for.
bool counts(const QString& name) {
    return name == reducedMotionKey || name == contrastKey || name == animationsKey || name == textScaleKey ||
           name == highContrastKey || name == buttonsKey || name == animationFactorKey;
}

/// A setting comes wrapped once or twice, by the portal's age.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// Whether the setting is there, of the same type as `wanted`, and equal to it.
bool is(const QVariant& value, const QVariant& wanted) {
    return value.metaType() == wanted.metaType() && value == wanted;
}

bool isZero(const QVariant& value) {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && number == 0;
}

/// The value of a setting of just this type; nothing when it is not there or of another.
template<typename T>
std::optional<T> valueOf(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<T>() ? std::optional(value.value<T>()) : std::nullopt;
}

} // namespace

PortalSettings::PortalSettings(Portal& portal) : portal_(portal) {
    // A slot with an argument of a type that the toolkit has not met yet is not connected.
    qRegisterMetaType<QDBusVariant>();
    connect(&portal_, &Portal::appeared, this, &PortalSettings::ask);
    if (portal_.isThere()) {
        ask();
    }
}

void PortalSettings::ask() {
    portal_.listen(portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                   SLOT(settingChanged(QString, QString, QDBusVariant, QDBusMessage)), QStringLiteral("ssv"));
    const QStringList groups{commonGroup, gnomeGroup, gnomeAccessGroup, windowsGroup, plasmaGroup};
    // A desktop that is only starting itself may take its time.
    constexpr std::chrono::seconds longestWait(60);
    portal_.call({settingsInterface, QStringLiteral("ReadAll"), {groups}, longestWait}, this,
                 [this](const QDBusMessage& answer) {
                     if (answer.signature() != QLatin1String("a{sa{sv}}")) {
                         return;
                     }
                     const auto told = qdbus_cast<Groups>(answer.arguments().value(0));
                     for (auto group = told.begin(); group != told.end(); ++group) {
                         for (auto setting = group->begin(); setting != group->end(); ++setting) {
                             take(group.key(), setting.key(), setting.value());
                         }
                     }
                     workOut();
                 });
}

void PortalSettings::settingChanged(const QString& group, const QString& key, const QDBusVariant& value,
                                    const QDBusMessage& message) {
    if (portal_.isFrom(message)) {
        take(group, key, value.variant());
        workOut();
    }
}

void PortalSettings::take(const QString& group, const QString& key, const QVariant& value) {
    const QString name = group + u'/' + key;
    if (counts(name)) {
        told_.insert(name, unwrapped(value));
    }
}

void PortalSettings::workOut() {
    constexpr uint wanted = 1;
    DesktopWishes wishes;
    wishes.reducedMotion = is(told_.value(reducedMotionKey), wanted) || is(told_.value(animationsKey), false) ||
                           isZero(told_.value(animationFactorKey));
    wishes.highContrast = is(told_.value(contrastKey), wanted) || is(told_.value(highContrastKey), true);
    wishes.textScale = valueOf<double>(told_.value(textScaleKey)).value_or(1);
    if (const auto buttons = valueOf<QString>(told_.value(buttonsKey))) {
        wishes.windowButtons = buttons->toStdString();
    }
    wishes_.set(std::move(wishes));
}

} // namespace velloran::platform::portal
