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

bool isOfUse(WindowButton button, platform::WindowAbilities abilities) {
    switch (button) {
    case WindowButton::minimize:
        return abilities.minimizes;
    case WindowButton::maximize:
        return abilities.maximizes;
    case WindowButton::close:
        return true;
    }
    return true;
}

} // namespace

DesktopWindowButtons::DesktopWindowButtons(const Published<platform::DesktopWishes>& wishes,
                                           const Published<platform::WindowAbilities>& abilities)
    : told_(abilities.stream().subscribe([this](const platform::WindowAbilities& now) { setAbilities(now); })) {
    if (isPlasma()) {
        layout_ = kwinLayout();
        return;
    }
    wishes_ = wishes.stream().subscribe([this](const platform::DesktopWishes& now) {
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

QList<QString> DesktopWindowButtons::namesOf(const std::vector<WindowButton>& buttons) const {
    QList<QString> names;
    for (const WindowButton button : buttons) {
        if (isOfUse(button, abilities_)) {
            names.append(nameOf(button));
        }
    }
    return names;
}

void DesktopWindowButtons::setLayout(WindowButtonLayout layout) {
    if (layout == layout_) {
        return;
    }
    layout_ = std::move(layout);
    emit changed();
}

void DesktopWindowButtons::setAbilities(platform::WindowAbilities abilities) {
    if (abilities == abilities_) {
        return;
    }
    abilities_ = abilities;
    emit changed();
}

} // namespace velloran
