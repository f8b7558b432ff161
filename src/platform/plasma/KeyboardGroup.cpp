#include "platform/plasma/KeyboardGroup.h"

namespace velloran::platform::plasma {

namespace {

/// No keyboard has more. The library that knows keymaps reads what is not there for numbers far beyond that.
constexpr std::uint32_t mostGroups = 32;

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

void KeyboardGroup::take(std::uint32_t told) {
    const std::uint32_t group = told < mostGroups ? told : 0;
    if (group != current_) {
        current_ = group;
        emit changed();
    }
}

} // namespace velloran::platform::plasma
