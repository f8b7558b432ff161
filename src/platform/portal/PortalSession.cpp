#include "platform/portal/PortalSession.h"

#include <QDBusObjectPath>

#include <utility>

namespace velloran::platform::portal {

namespace {

const auto sessionInterface = QStringLiteral("org.freedesktop.portal.Session");

} // namespace

PortalSession::PortalSession(Portal& portal, QString interface) : portal_(portal), interface_(std::move(interface)) {
    const QString token = nextToken();
    // It may be closed before the answer has come that it is open.
    path_ = QStringLiteral("%1/session/%2/%3").arg(portalPath, portal_.clientName(), token);
    portal_.listen(path_, sessionInterface, QStringLiteral("Closed"), this, SLOT(closed(QDBusMessage)));
    connect(&portal_, &Portal::vanished, this, &PortalSession::end);
    connect(&portal_, &QObject::destroyed, this, [this] { state_ = State::over; });
    creation_.emplace(portal_, PortalCall{interface_, QStringLiteral("CreateSession")},
                      QVariantMap{{QStringLiteral("session_handle_token"), token}},
                      [this](const PortalResponse& response) { created(response); });
}

PortalSession::~PortalSession() {
    if (state_ != State::over) {
        close();
    }
}

std::unique_ptr<PortalRequest> PortalSession::request(const QString& method, QVariantList arguments,
                                                      QVariantMap options, PortalRequest::Done done) {
    return std::make_unique<PortalRequest>(portal_, call(method, std::move(arguments)), std::move(options),
                                           std::move(done));
}

PortalCall PortalSession::call(const QString& method, QVariantList arguments) const {
    arguments.prepend(QVariant::fromValue(QDBusObjectPath(path_)));
    return {interface_, method, std::move(arguments)};
}

void PortalSession::created(const PortalResponse& response) {
    if (response.outcome != PortalResponse::Outcome::granted) {
        // It may still come to it later.
        close();
        end();
    } else if (state_ == State::opening) {
        state_ = State::open;
        emit opened();
    }
}

void PortalSession::closed(const QDBusMessage& message) {
    if (portal_.isFrom(message)) {
        end();
    }
}

void PortalSession::close() {
    portal_.tell({sessionInterface, QStringLiteral("Close"), {}, {}, path_});
}

void PortalSession::end() {
    if (std::exchange(state_, State::over) != State::over) {
        emit ended();
    }
}

} // namespace velloran::platform::portal
