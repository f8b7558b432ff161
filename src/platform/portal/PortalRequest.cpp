#include "platform/portal/PortalRequest.h"

#include <QDBusObjectPath>

#include <utility>

namespace velloran::platform::portal {

namespace {

using Outcome = PortalResponse::Outcome;

const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");

Outcome outcomeOf(uint response) {
    switch (response) {
    case 0:
        return Outcome::granted;
    case 1:
        return Outcome::refused;
    default:
        return Outcome::failed;
    }
}

} // namespace

PortalRequest::PortalRequest(Portal& portal, PortalCall call, QVariantMap options, Done done)
    : portal_(portal), done_(std::move(done)) {
    // The answer may be there before the call has returned, so its address is worked out beforehand.
    const QString token = nextToken();
    listenAt(QStringLiteral("%1/request/%2/%3").arg(portalPath, portal_.clientName(), token));
    connect(&portal_, &Portal::vanished, this, [this] { end({Outcome::lost}); });
    options.insert(QStringLiteral("handle_token"), token);
    call.arguments.append(options);
    portal_.call(call, this, [this](const QDBusMessage& answer) { taken(answer); });
}

PortalRequest::~PortalRequest() {
    if (done_) {
        close();
    }
}

void PortalRequest::taken(const QDBusMessage& answer) {
    if (!done_) {
        return;
    }
    if (answer.type() != QDBusMessage::ReplyMessage) {
        // It may still come to it later.
        close();
        end({Outcome::unavailable, {}, isSilence(answer)});
        return;
    }
    const QString path = answer.arguments().value(0).value<QDBusObjectPath>().path();
    // Without a place the connection would listen everywhere, and take the answer to another request for this one's.
    if (!path.isEmpty() && path != path_) {
        listenAt(path);
    }
}

void PortalRequest::listenAt(const QString& path) {
    path_ = path;
    portal_.listen(path, requestInterface, QStringLiteral("Response"), this,
                   SLOT(answered(uint, QVariantMap, QDBusMessage)), QStringLiteral("ua{sv}"));
}

void PortalRequest::answered(uint response, const QVariantMap& results, const QDBusMessage& message) {
    if (portal_.isFrom(message)) {
        end({outcomeOf(response), results});
    }
}

void PortalRequest::close() {
    portal_.tell({requestInterface, QStringLiteral("Close"), {}, {}, path_});
}

void PortalRequest::end(const PortalResponse& response) {
    if (const Done done = std::exchange(done_, nullptr)) {
        done(response);
    }
}

QString nextToken() {
    static int count = 0;
    return QStringLiteral("velloran_%1").arg(++count);
}

} // namespace velloran::platform::portal
