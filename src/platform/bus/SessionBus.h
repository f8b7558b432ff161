#pragma once

#include "platform/bus/busProbe.h"

#include <QDBusConnection>
#include <QObject>
#include <QThread>
#include <QTimer>

#include <memory>

namespace velloran::platform::bus {

/// The program's connection to the session bus, which is made anew when the bus goes away and there is one at the same
/// address again. In place of the toolkit's common connection, which ends with the bus that it was made to.
///
/// One for the process. Main thread only; needs the toolkit's application object.
class SessionBus final : public QObject {
    Q_OBJECT

public:
    /// Connects to a bus that answered. A silent one is tried again later.
    explicit SessionBus(BusPlace place);
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus() override;

    /// The one of this process; nothing where none was made.
    static SessionBus* current() { return current_; }

    /// The connection as it is now; not connected while there is no bus.
    [[nodiscard]] QDBusConnection connection() const { return connection_; }

signals:
    /// There is a bus again. Nothing that was registered on the last one is known to it.
    void connected();
    /// The bus has gone away, and every answer that was expected with it.
    void lost();

private slots:
    void loseConnection();

private:
    void watch();
    void reconnect();
    void reconnected();

    static SessionBus* current_;

    QByteArray address_;
    /// Whether the environment does not name the bus, because it was silent.
    bool isKeptFromOthers_ = false;
    QDBusConnection connection_;
    QTimer retry_;
    std::unique_ptr<QThread> connecting_;
    int connectionCount_ = 0;
};

} // namespace velloran::platform::bus
