#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <cstdint>
#include <optional>

namespace velloran::platform::bus {

/// What a desktop hands to a program that the user asked for, and what the program shows to be let to the front. Either
/// part may be empty.
struct ActivationToken {
    /// For Wayland's activation protocol.
    QByteArray wayland;
    /// The identifier of the start-up notification on X11.
    QByteArray startupId;

    bool operator==(const ActivationToken&) const = default;

    /// What this process was started with. To be asked before the toolkit starts: it uses the variables up.
    static ActivationToken fromEnvironment();

    /// What came with a call on the session bus.
    static ActivationToken fromPlatformData(const QVariantMap& platformData);

    /// The form in which it travels on the session bus.
    [[nodiscard]] QVariantMap platformData() const;

    /// The time of the user's action in the X server's milliseconds, which ends the identifier; nothing when it is
    /// absent.
    [[nodiscard]] std::optional<std::uint32_t> serverTime() const;
};

} // namespace velloran::platform::bus
