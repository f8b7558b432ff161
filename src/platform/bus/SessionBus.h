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
/// Main thread only; needs the toolkit's application object.
class SessionBus final : public QObject {
    Q_OBJECT

public:
    enum class Start {
        /// Waits for the bus, when it answered.
        atOnce,
        /// In another thread: there is no connection yet. For connections of their own beside the first.
        inBackground,
    };

    /// Connects. A bus that was silent or absent is tried again later; where the environment names no place, none is
    /// looked for.
    explicit SessionBus(BusPlace place, Start start = Start::atOnce);
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus() override;

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
    bool watch();
    void reconnect();
    void reconnected();

    QByteArray address_;
    /// Whether the environment does not name the bus, because it was silent.
    bool isKeptFromOthers_ = false;
    QDBusConnection connection_;
    QTimer retry_;
    std::unique_ptr<QThread> connecting_;
    /// Of the connection that is being made.
    QString nextName_;
};

} // namespace velloran::platform::bus
