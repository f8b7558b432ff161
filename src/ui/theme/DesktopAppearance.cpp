#include "ui/theme/DesktopAppearance.h"

#include <QGuiApplication>

#include <algorithm>
#include <tuple>

namespace velloran {

namespace {

/// On X11 the desktop's text size has gone into the screen's resolution, by which the toolkit enlarges everything.
bool isTextEnlargedAlready() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

qreal textScaleOf(double wish) {
    constexpr qreal least = 0.5;
    constexpr qreal greatest = 3;
    if (isTextEnlargedAlready()) {
        return 1;
    }
    // Written so that what is no number gives the least and not itself.
    return std::min(greatest, std::max(least, wish));
}

} // namespace

DesktopAppearance::DesktopAppearance(const Published<platform::DesktopWishes>& wishes)
    : subscription_(wishes.stream().subscribe([this](const platform::DesktopWishes& now) { take(now); })) {}

void DesktopAppearance::take(const platform::DesktopWishes& wishes) {
    const qreal textScale = textScaleOf(wishes.textScale);
    if (std::tie(wishes.reducedMotion, wishes.highContrast, textScale) ==
        std::tie(reducedMotion_, highContrast_, textScale_)) {
        return;
    }
    reducedMotion_ = wishes.reducedMotion;
    highContrast_ = wishes.highContrast;
    textScale_ = textScale;
    emit changed();
}

} // namespace velloran
