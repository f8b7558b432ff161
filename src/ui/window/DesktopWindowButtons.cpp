#include "ui/window/DesktopWindowButtons.h"

#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace velloran {

namespace {

bool isPlasma() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(QStringLiteral("KDE"));
}

WindowButtonLayout kwinLayout() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings settings(folder + QStringLiteral("/kwinrc"), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("org.kde.kdecoration2"));
    return WindowButtonLayout::fromLetters(settings.value(QStringLiteral("ButtonsOnLeft")).toString(),
                                           settings.value(QStringLiteral("ButtonsOnRight"), "IAX").toString());
}

QList<QString> namesOf(const std::vector<WindowButton>& buttons) {
    QList<QString> names;
    for (const WindowButton button : buttons) {
        names.append(nameOf(button));
    }
    return names;
}

} // namespace

DesktopWindowButtons::DesktopWindowButtons(const Published<platform::DesktopWishes>& wishes) {
    if (isPlasma()) {
        layout_ = kwinLayout();
        return;
    }
    subscription_ = wishes.stream().subscribe([this](const platform::DesktopWishes& now) {
        if (now.windowButtons) {
            setLayout(WindowButtonLayout::fromNames(QString::fromStdString(*now.windowButtons)));
        }
    });
}

QList<QString> DesktopWindowButtons::left() const {
    return namesOf(layout_.left);
}

QList<QString> DesktopWindowButtons::right() const {
    return namesOf(layout_.right);
}

void DesktopWindowButtons::setLayout(WindowButtonLayout layout) {
    if (layout == layout_) {
        return;
    }
    layout_ = std::move(layout);
    emit changed();
}

} // namespace velloran
