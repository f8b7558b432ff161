/// The part of `RemoteDesktop` that brings clicks into a session that was granted.
#include "platform/portal/RemoteDesktop.h"

#include "platform/portal/NotifySender.h"
#include "platform/portal/remoteControl.h"

#ifdef VELLORAN_LIBEI
#include "platform/portal/EiSender.h"
#endif

#include <QDBusUnixFileDescriptor>

#include <fcntl.h>

#include <memory>
#include <utility>

namespace velloran::platform::portal {

#ifdef VELLORAN_LIBEI
namespace {

/// From this version of the interface on the desktop can take input by a connection of its own.
constexpr uint firstWithInput = 2;

} // namespace

/// One stream, whose order holds: where the desktop has it, it is faster than calls, and its end is heard of at once.
void RemoteDesktop::connectToInput() {
    if (version_ < firstWithInput || isInputUnusable_) {
        useCalls();
        return;
    }
    state_ = State::connecting;
    patience_.start(longestWaitWithoutUser);
    portal_.call(session_->call(QStringLiteral("ConnectToEIS"), {QVariantMap()}), session_.get(),
                 [this](const QDBusMessage& answer) {
                     const auto descriptor = answer.arguments().value(0).value<QDBusUnixFileDescriptor>();
                     const int own = descriptor.isValid() ? fcntl(descriptor.fileDescriptor(), F_DUPFD_CLOEXEC, 0) : -1;
                     if (own < 0) {
                         // Whoever has not answered may still do it, and takes no calls in this session then.
                         if (isSilence(answer)) {
                             giveInputUp();
                         } else {
                             useCalls();
                         }
                         return;
                     }
                     // From here on the portal takes no calls for this session.
                     const auto changed = [this] {
                         isInputUnusable_ = false;
                         if (state_ == State::connecting) {
                             use(sender_);
                         } else {
                             tell();
                         }
                     };
                     isInputUnusable_ = true;
                     const auto lost = [this] {
                         if (state_ == State::connecting) {
                             giveInputUp();
                         } else {
                             end();
                         }
                     };
                     sender_ = std::make_shared<EiSender>(loop_, own, EiSender::Told{changed, lost});
                 });
}
#else
void RemoteDesktop::connectToInput() {
    useCalls();
}
#endif

/// The user has just agreed, perhaps in a dialog: where the desktop remembers that, it does for a session with calls.
void RemoteDesktop::giveInputUp() {
    end();
    if (state_ == State::idle && !isLocked_ && remembers()) {
        isInputUnusable_ = true;
        ask(Manner::withoutDialog);
    }
}

void RemoteDesktop::useCalls() {
    const auto lost = [self = QPointer(this), session = QPointer(session_.get())] {
        if (self && session && self->session_.get() == session) {
            self->end();
        }
    };
    use(std::make_shared<NotifySender>(loop_, portal_, session_->path(), lost));
}

void RemoteDesktop::use(std::shared_ptr<ClickSender> sender) {
    patience_.stop();
    state_ = State::open;
    sender_ = std::move(sender);
    events_->use(sender_);
    tell();
}

} // namespace velloran::platform::portal
