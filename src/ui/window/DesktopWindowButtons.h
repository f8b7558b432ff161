#pragma once

#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

#include "async/Published.h"
#include "platform/DesktopWishes.h"
#include "ui/window/WindowButtonLayout.h"

namespace velloran {

/// The window buttons of the desktop that is running. Follows what the desktop tells; on Plasma, which tells nothing,
/// they are as they stood in its settings at the start.
class DesktopWindowButtons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    /// Names of the buttons at the left end ("minimize", "maximize", "close"), from left to right.
    Q_PROPERTY(QList<QString> left READ left NOTIFY changed FINAL)
    /// The same for the right end.
    Q_PROPERTY(QList<QString> right READ right NOTIFY changed FINAL)

public:
    /// Follows the wishes for as long as both are there.
    explicit DesktopWindowButtons(const Published<platform::DesktopWishes>& wishes);

    [[nodiscard]] QList<QString> left() const;
    [[nodiscard]] QList<QString> right() const;

signals:
    void changed();

private:
    void setLayout(WindowButtonLayout layout);

    WindowButtonLayout layout_ = WindowButtonLayout::standard();
    Subscription subscription_;
};

} // namespace velloran
