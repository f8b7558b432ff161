#include "ui/window/DesktopWindowButtons.h"

#include "ui/theme/DesktopSettings.h"

#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace velloran {

namespace {

const auto preferencesGroup = QStringLiteral("org.gnome.desktop.wm.preferences");
const auto layoutKey = QStringLiteral("button-layout");

bool isPlasma() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(QStringLiteral("KDE"));
}

QList<QString> namesOf(const std::vector<WindowButton>& buttons) {
    QList<QString> names;
    for (const WindowButton button : buttons) {
        names.append(nameOf(button));
    }
    return names;
}

} // namespace

DesktopWindowButtons::DesktopWindowButtons(QObject* parent) : QObject(parent) {
    if (isPlasma()) {
        readKWinLayout();
    } else {
        followSettings();
    }
}

QList<QString> DesktopWindowButtons::left() const {
    return namesOf(layout_.left);
}

QList<QString> DesktopWindowButtons::right() const {
    return namesOf(layout_.right);
}

void DesktopWindowButtons::readKWinLayout() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings settings(folder + QStringLiteral("/kwinrc"), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("org.kde.kdecoration2"));
    setLayout(WindowButtonLayout::fromLetters(settings.value(QStringLiteral("ButtonsOnLeft")).toString(),
                                              settings.value(QStringLiteral("ButtonsOnRight"), "IAX").toString()));
}

void DesktopWindowButtons::followSettings() {
    auto* const settings = new DesktopSettings({preferencesGroup}, this);
    connect(settings, &DesktopSettings::told, this,
            [this](const QString& /*group*/, const QString& key, const QVariant& value) {
                if (key == layoutKey && value.metaType() == QMetaType::fromType<QString>()) {
                    setLayout(WindowButtonLayout::fromNames(value.toString()));
                }
            });
}

void DesktopWindowButtons::setLayout(WindowButtonLayout layout) {
    if (layout == layout_) {
        return;
    }
    layout_ = std::move(layout);
    emit changed();
}

} // namespace velloran
