#pragma once

#include <QString>
#include <QStringList>
#include <QtQmlIntegration>

#include "platform/Desktop.h"

namespace velloran {

/// What does not work on this desktop: for each part a sentence for the user, which is empty where it does work.
class DesktopLimits {
    Q_GADGET
    QML_VALUE_TYPE(desktopLimits)
    Q_PROPERTY(QString clicks MEMBER clicks)
    Q_PROPERTY(QString hotkey MEMBER hotkey)
    Q_PROPERTY(QString stillMouse MEMBER stillMouse)
    /// Those that there are.
    Q_PROPERTY(QStringList sentences READ sentences)

public:
    static DesktopLimits of(const platform::Desktop& desktop) {
        return {QString::fromStdString(desktop.clicks.limit), QString::fromStdString(desktop.hotKeys.limit),
                QString::fromStdString(desktop.pointer.limit)};
    }

    QString clicks;
    QString hotkey;
    QString stillMouse;

    bool operator==(const DesktopLimits&) const = default;

    [[nodiscard]] QStringList sentences() const {
        QStringList found{clicks, hotkey, stillMouse};
        found.removeAll(QString());
        return found;
    }
};

} // namespace velloran
