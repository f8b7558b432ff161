#pragma once

#include "platform/portal/Portal.h"

#include <QVariantMap>

namespace velloran::platform::portal {

/// How a request ended.
struct PortalResponse {
    enum class Outcome {
        granted,
        /// By the user.
        refused,
        /// In some other way. Some portals say so although they did what was asked: the results tell.
        failed,
        /// The portal did not take the request, or not in time; nothing is shown.
        unavailable,
        /// The portal has gone meanwhile, or the bus.
        lost,
    };

    Outcome outcome = Outcome::unavailable;
    QVariantMap results = {};
    /// Where it is unavailable: the portal has not said so, but nothing at all.
    bool isSilence = false;
};

/// Something that the portal asks its user for, which may take any time. Destroying it withdraws the request. Main
/// thread.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    using Done = std::function<void(const PortalResponse& response)>;

    /// Makes the call, with `options` as its last argument, to which a token for the answer is added. `done` is called
    /// once, in a later turn, and may destroy the request. The call's longest wait is for the portal to take the
    /// request; who does not want to wait for ever for the user destroys it.
    PortalRequest(Portal& portal, PortalCall call, QVariantMap options, Done done);
    PortalRequest(const PortalRequest&) = delete;
    PortalRequest& operator=(const PortalRequest&) = delete;
    ~PortalRequest() override;

private slots:
    void answered(uint response, const QVariantMap& results, const QDBusMessage& message);

private:
    void taken(const QDBusMessage& answer);
    void listenAt(const QString& path);
    void close();
    void end(const PortalResponse& response);

    Portal& portal_;
    /// Nothing once the request is over.
    Done done_;
    QString path_;
};

/// A word that this process has not used before, for paths that the portal makes.
QString nextToken();

} // namespace velloran::platform::portal
