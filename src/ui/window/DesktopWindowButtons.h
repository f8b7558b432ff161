#pragma once

#include "ui/window/WindowButtonLayout.h"

#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

namespace velloran {

/// The window buttons of the desktop that is running. Starts with what can be known at once and follows the desktop's
/// answer and its later changes; waits for neither.
class DesktopWindowButtons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// Names of the buttons at the left end ("minimize", "maximize", "close"), from left to right.
    Q_PROPERTY(QList<QString> left READ left NOTIFY changed FINAL)
    /// The same for the right end.
    Q_PROPERTY(QList<QString> right READ right NOTIFY changed FINAL)

public:
    explicit DesktopWindowButtons(QObject* parent = nullptr);

    [[nodiscard]] QList<QString> left() const;
    [[nodiscard]] QList<QString> right() const;

signals:
    void changed();

private:
    void readKWinLayout();
    void followSettings();
    void setLayout(WindowButtonLayout layout);

    WindowButtonLayout layout_ = WindowButtonLayout::standard();
};

} // namespace velloran
