#pragma once

#include "platform/bus/SessionBus.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <array>

namespace velloran::platform::bus {

/// Whether the screen of this session is locked, as the desktop tells on the session bus or the system's login manager
/// on the system bus. Where neither does, it is not, nor for a desktop whose bus has gone. Nothing here waits, and
/// nothing is started for it. Main thread.
class ScreenLock final : public QObject {
    Q_OBJECT

public:
    /// Both have to outlive this.
    ScreenLock(SessionBus& session, SessionBus& system);
    ScreenLock(const ScreenLock&) = delete;
    ScreenLock& operator=(const ScreenLock&) = delete;

    [[nodiscard]] bool isLocked() const { return isLocked_; }

    /// Where the system bus is.
    static BusPlace systemBus();

signals:
    /// `isLocked` has changed.
    void changed(bool isLocked);

private slots:
    void desktopTold(bool isActive, const QDBusMessage& message);
    void loginTold(const QString& interface);

private:
    void followDesktop();
    void forgetDesktop();
    void followLogin();
    void askDesktop();
    void ask(SessionBus& bus, const QDBusMessage& question, std::size_t source);
    void take(std::size_t source, bool isLocked);

    SessionBus& session_;
    SessionBus& system_;
    /// What each source says; the last is the login manager.
    std::array<bool, 5> says_{};
    bool isLocked_ = false;
};

} // namespace velloran::platform::bus
