#pragma once

#include <QDBusMessage>
#include <QObject>

#include "platform/bus/BusService.h"

#include <cstdint>

namespace velloran::platform::plasma {

/// Which of the layouts in the keyboard's keymap is active, as Plasma tells on the bus. The first, where it does not.
/// Main thread.
class KeyboardGroup final : public QObject {
    Q_OBJECT

public:
    /// `bus` has to outlive this.
    explicit KeyboardGroup(bus::SessionBus& bus);

    /// 0 is the first.
    [[nodiscard]] std::uint32_t current() const { return current_; }

signals:
    void changed();

private slots:
    void told(const QDBusMessage& message);

private:
    void ask();
    void take(std::uint32_t told);

    bus::BusService keyboard_;
    std::uint32_t current_ = 0;
};

} // namespace velloran::platform::plasma
