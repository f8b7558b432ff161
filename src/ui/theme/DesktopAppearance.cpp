#include "ui/theme/DesktopAppearance.h"

#include <QGuiApplication>
#include <QStringList>

#include <algorithm>
#include <tuple>

namespace velloran {

namespace {

const auto commonGroup = QStringLiteral("org.freedesktop.appearance");
const auto gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const auto gnomeAccessGroup = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto plasmaGroup = QStringLiteral("org.kde.kdeglobals.KDE");

const auto reducedMotionKey = commonGroup + QStringLiteral("/reduced-motion");
const auto contrastKey = commonGroup + QStringLiteral("/contrast");
const auto animationsKey = gnomeGroup + QStringLiteral("/enable-animations");
const auto textScaleKey = gnomeGroup + QStringLiteral("/text-scaling-factor");
const auto highContrastKey = gnomeAccessGroup + QStringLiteral("/high-contrast");
const auto animationFactorKey = plasmaGroup + QStringLiteral("/AnimationDurationFactor");

/// Whether the setting is there, of the same type as `wanted`, and equal to it.
bool is(const QVariant& value, const QVariant& wanted) {
    return value.metaType() == wanted.metaType() && value == wanted;
}

bool isZero(const QVariant& value) {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && number == 0;
}

/// On X11 the desktop's text size has gone into the screen's resolution, by which the toolkit enlarges everything.
bool isTextEnlargedAlready() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

qreal textScaleOf(const QVariant& value) {
    constexpr qreal least = 0.5;
    constexpr qreal greatest = 3;
    if (isTextEnlargedAlready() || value.metaType() != QMetaType::fromType<double>()) {
        return 1;
    }
    // Written so that what is no number gives the least and not itself.
    return std::min(greatest, std::max(least, value.toDouble()));
}

} // namespace

DesktopAppearance::DesktopAppearance(QObject* parent)
    : QObject(parent), settings_({commonGroup, gnomeGroup, gnomeAccessGroup, plasmaGroup}) {
    connect(&settings_, &DesktopSettings::told, this, &DesktopAppearance::take);
    connect(&settings_, &DesktopSettings::upToDate, this, &DesktopAppearance::workOut);
}

void DesktopAppearance::take(const QString& group, const QString& key, const QVariant& value) {
    const QString name = group + u'/' + key;
    if (name == reducedMotionKey || name == contrastKey || name == animationsKey || name == textScaleKey ||
        name == highContrastKey || name == animationFactorKey) {
        told_.insert(name, value);
    }
}

void DesktopAppearance::workOut() {
    constexpr uint wanted = 1;
    const bool reducedMotion = is(told_.value(reducedMotionKey), wanted) || is(told_.value(animationsKey), false) ||
                               isZero(told_.value(animationFactorKey));
    const bool highContrast = is(told_.value(contrastKey), wanted) || is(told_.value(highContrastKey), true);
    const qreal textScale = textScaleOf(told_.value(textScaleKey));
    if (std::tie(reducedMotion, highContrast, textScale) == std::tie(reducedMotion_, highContrast_, textScale_)) {
        return;
    }
    reducedMotion_ = reducedMotion;
    highContrast_ = highContrast;
    textScale_ = textScale;
    emit changed();
}

} // namespace velloran
