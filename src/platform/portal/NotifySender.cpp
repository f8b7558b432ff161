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
    : loop_(loop),
      connection_(portal.connection()),
      portal_(portal.owner()),
      session_(session),
      loss_(loop, std::move(onLost)) {}

void NotifySender::send(const std::vector<MouseEvent>& events) {
    if (begin()) {
        sendEach(events);
        finish();
    }
}

/// A session that ends between a press and its release would have the portal refuse the release, and some desktops keep
/// the button down then.
void NotifySender::end(std::unique_ptr<PortalSession> session) {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    if (isSending_) {
        ending_ = std::move(session);
    }
    // Otherwise the session ends with this function.
}

bool NotifySender::begin() {
    const std::lock_guard lock(mutex_);
    isSending_ = !isEnded_;
    return isSending_;
}

void NotifySender::finish() {
    const std::lock_guard lock(mutex_);
    isSending_ = false;
    if (ending_) {
        // In a turn of its own thread, whoever may hold the function for longer.
        loop_.postFromAnyThread(
            [ending = std::make_shared<std::unique_ptr<PortalSession>>(std::move(ending_))] { ending->reset(); });
    }
}

void NotifySender::sendEach(const std::vector<MouseEvent>& events) {
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
