#include "platform/bus/ActivationToken.h"

#include <QString>

namespace velloran::platform::bus {

namespace {

const auto tokenKey = QStringLiteral("activation-token");
const auto startupIdKey = QStringLiteral("desktop-startup-id");

} // namespace

ActivationToken ActivationToken::fromEnvironment() {
    return {qgetenv("XDG_ACTIVATION_TOKEN"), qgetenv("DESKTOP_STARTUP_ID")};
}

ActivationToken ActivationToken::fromPlatformData(const QVariantMap& platformData) {
    return {platformData.value(tokenKey).toString().toUtf8(), platformData.value(startupIdKey).toString().toUtf8()};
}

QVariantMap ActivationToken::platformData() const {
    QVariantMap data;
    if (!wayland.isEmpty()) {
        data.insert(tokenKey, QString::fromUtf8(wayland));
    }
    if (!startupId.isEmpty()) {
        data.insert(startupIdKey, QString::fromUtf8(startupId));
    }
    return data;
}

std::optional<std::uint32_t> ActivationToken::serverTime() const {
    constexpr QByteArrayView marker = "_TIME";
    const qsizetype place = startupId.lastIndexOf(marker);
    if (place < 0) {
        return std::nullopt;
    }
    bool isNumber = false;
    const std::uint32_t time = startupId.mid(place + marker.size()).toUInt(&isNumber);
    // Zero stands for "now" and would be no proof of anything.
    return isNumber && time != 0 ? std::optional(time) : std::nullopt;
}

} // namespace velloran::platform::bus
