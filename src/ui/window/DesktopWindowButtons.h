#pragma once

#include <QObject>
#include <QStringList>
#include <QtQmlIntegration>

#include "async/Published.h"
#include "platform/DesktopWishes.h"
#include "platform/WindowAbilities.h"
#include "ui/window/WindowButtonLayout.h"

namespace velloran {

/// The window buttons of the desktop that is running. Follows what the desktop tells; on Plasma, which tells nothing,
/// they are as they stood in its settings at the start. Buttons that would do nothing there are left out.
class DesktopWindowButtons : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    /// Names of the buttons at the left end ("minimize", "maximize", "close"), from left to right.
    Q_PROPERTY(QList<QString> left READ left NOTIFY changed FINAL)
    /// The same for the right end.
    Q_PROPERTY(QList<QString> right READ right NOTIFY changed FINAL)
    /// Whether the desktop makes windows large that ask for it, and puts them away.
    Q_PROPERTY(bool maximizes READ maximizes NOTIFY changed FINAL)
    Q_PROPERTY(bool minimizes READ minimizes NOTIFY changed FINAL)

public:
    /// Follows both for as long as they and this are there.
    DesktopWindowButtons(const Published<platform::DesktopWishes>& wishes,
                         const Published<platform::WindowAbilities>& abilities);

    [[nodiscard]] QList<QString> left() const;
    [[nodiscard]] QList<QString> right() const;

    [[nodiscard]] bool maximizes() const { return abilities_.maximizes; }

    [[nodiscard]] bool minimizes() const { return abilities_.minimizes; }

signals:
    void changed();

private:
    [[nodiscard]] QList<QString> namesOf(const std::vector<WindowButton>& buttons) const;
    void setLayout(WindowButtonLayout layout);
    void setAbilities(platform::WindowAbilities abilities);

    WindowButtonLayout layout_ = WindowButtonLayout::standard();
    platform::WindowAbilities abilities_;
    Subscription wishes_;
    Subscription told_;
};

} // namespace velloran
