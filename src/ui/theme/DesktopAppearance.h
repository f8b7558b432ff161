#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include "async/Published.h"
#include "platform/DesktopWishes.h"

namespace velloran {

/// What the desktop's user wishes for all programs, as the views take it: less motion, more contrast, larger text.
class DesktopAppearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed FINAL)
    /// How much larger than usual text is to be, 0.5…3; 1 where the window system enlarges it already.
    Q_PROPERTY(qreal textScale READ textScale NOTIFY changed FINAL)

public:
    /// Follows the wishes for as long as both are there.
    explicit DesktopAppearance(const Published<platform::DesktopWishes>& wishes);

    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    [[nodiscard]] bool highContrast() const { return highContrast_; }

    [[nodiscard]] qreal textScale() const { return textScale_; }

signals:
    void changed();

private:
    void take(const platform::DesktopWishes& wishes);

    bool reducedMotion_ = false;
    bool highContrast_ = false;
    qreal textScale_ = 1;
    Subscription subscription_;
};

} // namespace velloran
