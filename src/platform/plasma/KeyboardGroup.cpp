#include "platform/plasma/KeyboardGroup.h"

namespace velloran::platform::plasma {

namespace {

const auto layoutsPath = QStringLiteral("/Layouts");
const auto layoutsInterface = QStringLiteral("org.kde.KeyboardLayouts");

} // namespace

KeyboardGroup::KeyboardGroup(bus::SessionBus& bus) : keyboard_(bus, QStringLiteral("org.kde.keyboard")) {
    connect(&keyboard_, &bus::BusService::appeared, this, [this] {
        keyboard_.listen(layoutsPath, layoutsInterface, QStringLiteral("layoutChanged"), this,
                         SLOT(told(QDBusMessage)));
        keyboard_.listen(layoutsPath, layoutsInterface, QStringLiteral("layoutListChanged"), this,
                         SLOT(told(QDBusMessage)));
        ask();
    });
    connect(&keyboard_, &bus::BusService::vanished, this, [this] { take(0); });
}

/// What it tells differs from version to version.
void KeyboardGroup::told(const QDBusMessage& message) {
    if (keyboard_.isFrom(message)) {
        ask();
    }
}

void KeyboardGroup::ask() {
    keyboard_.call({layoutsPath, layoutsInterface, QStringLiteral("getLayout")}, this,
                   [this](const QDBusMessage& answer) { take(answer.arguments().value(0).toUInt()); });
}

void KeyboardGroup::take(std::uint32_t group) {
    if (group != current_) {
        current_ = group;
        emit changed();
    }
}

} // namespace velloran::platform::plasma
