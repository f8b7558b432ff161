#pragma once

#include "platform/portal/PortalRequest.h"

#include <memory>
#include <optional>

namespace velloran::platform::portal {

/// A session that the portal keeps for this program, as for input or shortcuts: it is opened, used by requests, and
/// ends. Destroying it closes it. Main thread.
class PortalSession final : public QObject {
    Q_OBJECT

public:
    /// Has one made by the interface's `CreateSession`. Ends with exactly one signal `ended`, which may come without
    /// `opened`; both in later turns. `portal` has to outlive this, unless it is open and only destroyed afterwards.
    PortalSession(Portal& portal, QString interface);
    PortalSession(const PortalSession&) = delete;
    PortalSession& operator=(const PortalSession&) = delete;
    ~PortalSession() override;

    [[nodiscard]] bool isOpen() const { return state_ == State::open; }

    /// How the portal calls it.
    [[nodiscard]] const QString& path() const { return path_; }

    /// A request in the open session: the session comes first among its arguments. See `PortalRequest`.
    [[nodiscard]] std::unique_ptr<PortalRequest> request(const QString& method, QVariantList arguments,
                                                         QVariantMap options, PortalRequest::Done done);

    /// A call of the session's interface that is answered at once; with the session as its first argument.
    [[nodiscard]] PortalCall call(const QString& method, QVariantList arguments) const;

signals:
    void opened();
    /// It could not be opened, the portal has closed it, or the portal or the bus has gone. Nothing is to be done with
    /// it any more.
    void ended();

private slots:
    void closed(const QDBusMessage& message);

private:
    enum class State { opening, open, over };

    void created(const PortalResponse& response);
    void close();
    void end();

    Portal& portal_;
    QString interface_;
    QString path_;
    State state_ = State::opening;
    std::optional<PortalRequest> creation_;
};

} // namespace velloran::platform::portal
