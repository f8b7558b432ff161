#pragma once

#include "async/ConnectionLoss.h"
#include "platform/portal/ClickSender.h"
#include "platform/portal/Portal.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace velloran::platform::portal {

/// Clicks by a call for each press and each release. The portal answers calls on threads of its own and so mixes up
/// what it is sent in one go: each answer is waited for before the next call. The toolkit's connection is made for
/// that: it lets any thread wait for an answer, while it reads and writes on one of its own.
class NotifySender final : public ClickSender {
public:
    /// `onLost` is called in a turn of the loop, once, when the session takes no clicks any more.
    NotifySender(EventLoop& loop, const Portal& portal, const QString& session, std::function<void()> onLost);

    [[nodiscard]] bool canSend() const override { return !loss_.isLost(); }

    [[nodiscard]] bool waits() const override { return true; }

    void send(const std::vector<MouseEvent>& events) override;

    /// A release whose press waits for its answer is still sent, and answered, before the session ends.
    void end(std::unique_ptr<PortalSession> session) override;

private:
    [[nodiscard]] bool begin();
    void finish();
    void sendEach(const std::vector<MouseEvent>& events);
    [[nodiscard]] QDBusMessage messageOf(const MouseEvent& event) const;

    EventLoop& loop_;
    const QDBusConnection connection_;
    const QString portal_;
    const QDBusObjectPath session_;
    ConnectionLoss loss_;

    std::mutex mutex_; // guards what follows
    bool isSending_ = false;
    bool isEnded_ = false;
    /// What ends behind that which is being sent.
    std::unique_ptr<PortalSession> ending_;
};

} // namespace velloran::platform::portal
