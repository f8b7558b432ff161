#pragma once

#include "platform/bus/SessionBus.h"

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <functional>

namespace velloran::platform::portal {

/// Where the portal is, for all but requests and sessions.
inline const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

/// One call to the portal.
struct PortalCall {
    QString interface;
    QString method;
    QVariantList arguments = {};
    /// An answer that takes longer is an error.
    std::chrono::milliseconds longestWait = std::chrono::seconds(10);
    QString path = portalPath;
};

/// Whether this is no answer of the portal's, but what stands for one that does not come.
bool isSilence(const QDBusMessage& answer);

/// The desktop's portal, as one connection to the session bus sees it: which program it is, through restarts of it and
/// of the bus, and what it says. Has the bus start it. Nothing here waits, a bus that answers late included. Main
/// thread.
class Portal final : public QObject {
    Q_OBJECT

public:
    /// `bus` has to outlive this. With an application's name, that is the first thing each portal is told on this
    /// connection, which needs a connection of its own: a name can only be given before anything else was asked.
    explicit Portal(bus::SessionBus& bus, QString applicationName = {});
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;

    /// Whether it is known to be there, and has been told the name.
    [[nodiscard]] bool isThere() const { return isThere_; }

    /// Why the portal there does not take the name; empty when it does, or has not been told any.
    [[nodiscard]] const QString& nameError() const { return nameError_; }

    /// Whether the portal there takes names from programs at all. One of old goes by what it sees.
    [[nodiscard]] bool takesNames() const { return takesNames_; }

    /// Whether it, and nobody else on the bus, has sent this.
    [[nodiscard]] bool isFrom(const QDBusMessage& message) const {
        return !owner_.isEmpty() && message.service() == owner_;
    }

    /// Calls it, and tells its answer, or an error, in a later turn; nothing once `context` has gone.
    void call(const PortalCall& call, QObject* context, std::function<void(const QDBusMessage& answer)> done);

    /// Asks which version of an interface it has, and tells it in a later turn, or 0 where it has none; nothing once
    /// `context` or this portal has gone.
    void askVersion(const QString& interface, QObject* context, std::function<void(uint version)> done);

    /// Asks the bus whether anybody has that name, and tells it in a later turn; nothing where the bus does not say, or
    /// once `context` has gone.
    void askForOwner(const QString& name, QObject* context, std::function<void(bool isOwned)> done);

    /// Calls it without caring for an answer, and without having it started for that.
    void tell(const PortalCall& call);

    /// Has a slot told of a signal, whoever sends it: a slot ends with a `QDBusMessage`, for `isFrom`. Holds until the
    /// bus has gone, or the receiver. Has no effect while there is no bus, or when done again. Told is what comes in
    /// those `types`, in the bus's own letters. Only a slot that takes nothing but the message can do without them: for
    /// an argument of another type than a slot takes the toolkit ends the program.
    void listen(const QString& path, const QString& interface, const QString& signal, QObject* receiver,
                const char* slot, const QString& types = {});

    /// Has a slot told when another name changes its owner, with the name, the old and the new owner. Holds as
    /// `listen`.
    void listenToName(const QString& name, QObject* receiver, const char* slot);

    /// The connection, for calls that another thread waits for.
    [[nodiscard]] QDBusConnection connection() const { return bus_.connection(); }

    /// The portal that is there, by the name that nobody else gets when it goes; empty while there is none.
    [[nodiscard]] const QString& owner() const { return owner_; }

    /// How this connection is called in the paths that the portal makes for it; empty while there is no bus.
    [[nodiscard]] QString clientName() const;

signals:
    /// It is there, for the first time or anew. It knows nothing of what was asked of it or of another before.
    void appeared();
    /// It has gone, or the bus, and every answer that was expected with it. May also be replaced: then `appeared`
    /// follows.
    void vanished();
    /// The bus has none to start. One may come all the same.
    void missing();

private slots:
    void ownerChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    void follow();
    void lookForRunningOne();
    void setOwner(const QString& owner);
    void introduce();
    void announce();

    bus::SessionBus& bus_;
    QString applicationName_;
    QString owner_;
    bool isThere_ = false;
    QString nameError_;
    bool takesNames_ = true;
};

} // namespace velloran::platform::portal
