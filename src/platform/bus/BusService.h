#pragma once

#include "platform/bus/SessionBus.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <functional>

namespace velloran::platform::bus {

/// A service on the session bus that runs or does not: whoever has that name now, through restarts of it and of the
/// bus. Never has it started. Nothing here waits. Main thread.
class BusService final : public QObject {
    Q_OBJECT

public:
    /// One call to it.
    struct Call {
        QString path;
        QString interface;
        QString method;
        QVariantList arguments = {};
    };

    using Answered = std::function<void(const QDBusMessage& answer)>;

    /// `bus` has to outlive this.
    BusService(SessionBus& bus, QString name);
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;
    ~BusService() override = default;

    /// Whether the bus has said who has the name, or that nobody has.
    [[nodiscard]] bool isKnown() const { return isKnown_; }

    /// Whether it runs, as far as is known.
    [[nodiscard]] bool isThere() const { return !owner_.isEmpty(); }

    /// Whether it, as it runs now, and nobody else on the bus has sent this.
    [[nodiscard]] bool isFrom(const QDBusMessage& message) const { return isThere() && message.service() == owner_; }

    /// Calls it, and tells its answer, or an error, in a later turn; nothing once `context` has gone, or it itself,
    /// even if another has its name by then.
    void call(const Call& call, QObject* context, Answered answered);

    /// Calls it without caring for an answer. No effect where it does not run.
    void tell(const Call& call);

    /// Has a slot told of a signal, whoever sends it and in whatever types: the slot takes a `QDBusMessage`, for
    /// `isFrom`, and nothing else, since for an argument of another type the toolkit ends the program. An empty path
    /// stands for all. Holds until the bus has gone, or the receiver; to be done again after each `appeared`, and
    /// without effect where it was done already.
    void listen(const QString& path, const QString& interface, const QString& signal, QObject* receiver,
                const char* slot);

signals:
    /// It runs, for the first time or anew, and knows nothing of what was asked of it before.
    void appeared();
    /// It has gone, or the bus. May be replaced at once: then `appeared` follows.
    void vanished();
    /// Nobody has the name, as the bus has said when it was first asked.
    void missing();

private slots:
    void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void follow();
    void setOwner(const QString& owner);
    [[nodiscard]] QDBusMessage messageOf(const Call& call) const;

    SessionBus& bus_;
    const QString name_;
    QString owner_;
    bool isKnown_ = false;
};

} // namespace velloran::platform::bus
