#pragma once

#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace velloran {

/// Makes of arbitrary bytes what a message on a bus may hold, of any type and depth. When the bytes are at an end, what
/// comes is empty.
class BusValues {
public:
    explicit BusValues(std::string_view bytes) : bytes_(bytes) {}

    [[nodiscard]] bool isAtEnd() const { return bytes_.empty(); }

    std::uint8_t byte() {
        if (bytes_.empty()) {
            return 0;
        }
        const auto value = static_cast<std::uint8_t>(bytes_.front());
        bytes_.remove_prefix(1);
        return value;
    }

    template<typename T>
    T number() {
        T value{};
        const std::size_t size = std::min(sizeof value, bytes_.size());
        std::memcpy(&value, bytes_.data(), size);
        bytes_.remove_prefix(size);
        return value;
    }

    /// Some of `words`, which are what counts, or any other text.
    QString text() {
        const std::uint8_t choice = byte();
        if (choice < words.size()) {
            return QLatin1String(words.at(choice));
        }
        const std::size_t size = std::min<std::size_t>(choice % 32, bytes_.size());
        QString text = QString::fromUtf8(bytes_.data(), static_cast<qsizetype>(size));
        bytes_.remove_prefix(size);
        // No message holds one.
        text.remove(QChar());
        return text;
    }

    QVariantMap map(int depth) {
        QVariantMap map;
        for (int count = byte() % 4; count > 0; --count) {
            const QString key = text();
            map.insert(key, value(depth - 1));
        }
        return map;
    }

    QVariantList list(int depth) {
        QVariantList list;
        for (int count = byte() % 4; count > 0; --count) {
            list.append(value(depth - 1));
        }
        return list;
    }

    QVariant value(int depth = 3) {
        switch (byte() % (depth > 0 ? 14 : 10)) {
        case 0:
            return byte() % 2 == 0;
        case 1:
            return number<std::int32_t>();
        case 2:
            return number<std::uint32_t>();
        case 3:
            return number<double>();
        case 4:
            return QVariant::fromValue(number<qlonglong>());
        case 5:
            return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/") + QString::number(byte())));
        case 6:
            return QVariant::fromValue(byte());
        case 7:
            return QByteArray(3, static_cast<char>(byte()));
        case 8:
            return static_cast<std::uint32_t>(byte());
        case 9:
            return text();
        case 10:
            return map(depth);
        case 11:
            return list(depth);
        case 12: {
            QString first = text();
            return QStringList{std::move(first), text()};
        }
        default:
            return QVariant::fromValue(QDBusVariant(value(depth - 1)));
        }
    }

    static constexpr std::array words{"activation-token",
                                      "desktop-startup-id",
                                      "toggle",
                                      "quit",
                                      "shortcuts",
                                      "trigger_description",
                                      "uris",
                                      "devices",
                                      "restore_token",
                                      "session_handle",
                                      "file:///a%20b",
                                      "http://a/b",
                                      "CTRL+ALT+s",
                                      "Press <Control><Alt>s",
                                      "version",
                                      "org.freedesktop.appearance",
                                      "contrast",
                                      "reduced-motion",
                                      "org.gnome.desktop.interface",
                                      "text-scaling-factor",
                                      "enable-animations",
                                      "org.gnome.desktop.wm.preferences",
                                      "button-layout",
                                      "org.kde.kdeglobals.KDE",
                                      "AnimationDurationFactor",
                                      "a_TIME123",
                                      "a_TIME4294967296",
                                      "id",
                                      "",
                                      "close,minimize:"};

private:
    std::string_view bytes_;
};

} // namespace velloran
