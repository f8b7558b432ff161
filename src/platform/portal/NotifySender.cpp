#include "platform/portal/NotifySender.h"

#include <QDBusMessage>
#include <QVariantMap>

#include <utility>

namespace velloran::platform::portal {

namespace {

/// A portal that takes longer for one button is no way to click. Quitting waits for that, too.
constexpr int longestWait = 5000; // milliseconds

} // namespace

/// The portal is called by the name of its connection: one that has been restarted knows nothing of the session.
NotifySender::NotifySender(EventLoop& loop, const Portal& portal, const QString& session, std::function<void()> onLost)
    : connection_(portal.connection()), portal_(portal.owner()), session_(session), loss_(loop, std::move(onLost)) {}

void NotifySender::send(const std::vector<MouseEvent>& events) {
    for (const MouseEvent& event : events) {
        if (loss_.isLost()) {
            // A press without an answer may have been one. Nobody waits for this.
            if (!isPress(event.type)) {
                connection_.send(messageOf(event));
            }
        } else if (connection_.call(messageOf(event), QDBus::Block, longestWait).type() != QDBusMessage::ReplyMessage) {
            loss_.report();
        }
    }
}

QDBusMessage NotifySender::messageOf(const MouseEvent& event) const {
    QDBusMessage message =
        QDBusMessage::createMethodCall(portal_, portalPath, QStringLiteral("org.freedesktop.portal.RemoteDesktop"),
                                       QStringLiteral("NotifyPointerButton"));
    message.setArguments(
        {QVariant::fromValue(session_), QVariantMap(), evdevButton(event.button), isPress(event.type) ? 1U : 0U});
    return message;
}

} // namespace velloran::platform::portal
