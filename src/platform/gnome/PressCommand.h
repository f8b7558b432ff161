#pragma once

#include <QObject>
#include <QString>

#include "platform/bus/SessionBus.h"

namespace velloran::platform::gnome {

/// The command that the desktop runs for a press of our entry, and where it arrives: an object on the session bus, by a
/// name that starts nothing, as the program's own would. Main thread.
class PressCommand final : public QObject {
    Q_OBJECT

public:
    /// `bus` has to outlive this.
    explicit PressCommand(bus::SessionBus& bus);
    PressCommand(const PressCommand&) = delete;
    PressCommand& operator=(const PressCommand&) = delete;

    /// What the desktop has to run.
    [[nodiscard]] static QString text();

    /// From now on it arrives. To be called again when the bus has been away.
    void serve();

signals:
    void pressed();

private:
    bus::SessionBus& bus_;
};

} // namespace velloran::platform::gnome
