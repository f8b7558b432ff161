#pragma once

#include "ui/theme/DesktopSettings.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQmlIntegration>

namespace velloran {

/// What the user has set for all programs of the desktop: less motion, more contrast, larger text. Starts with none of
/// it, takes over the answer of the desktop's settings portal when it comes, and follows later changes. Never waits; a
/// portal that is absent or silent leaves everything as it is.
class DesktopAppearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed FINAL)
    /// How much larger than usual text is to be, 0.5…3; 1 where the window system enlarges it already.
    Q_PROPERTY(qreal textScale READ textScale NOTIFY changed FINAL)

public:
    explicit DesktopAppearance(QObject* parent = nullptr);

    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    [[nodiscard]] bool highContrast() const { return highContrast_; }

    [[nodiscard]] qreal textScale() const { return textScale_; }

signals:
    void changed();

private:
    void take(const QString& group, const QString& key, const QVariant& value);
    void workOut();

    DesktopSettings settings_;
    /// What was told of the settings that count, by group and key.
    QHash<QString, QVariant> told_;
    bool reducedMotion_ = false;
    bool highContrast_ = false;
    qreal textScale_ = 1;
};

} // namespace velloran
