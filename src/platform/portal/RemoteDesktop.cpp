#include "platform/portal/RemoteDesktop.h"

#include "platform/portal/remoteControl.h"

#include <chrono>
#include <utility>

namespace velloran::platform::portal {

namespace {

using namespace std::chrono_literals;

using Outcome = PortalResponse::Outcome;

const auto remoteDesktop = QStringLiteral("org.freedesktop.portal.RemoteDesktop");
const auto restoreToken = QStringLiteral("restore_token");

/// Of the device types.
constexpr uint pointerDevice = 2;
/// Remember it until the user takes it back.
constexpr uint untilRevoked = 2;

/// For a grant that the desktop remembers: whoever takes longer shows a dialog.
constexpr auto longestWaitWithoutDialog = 3s;

/// Between the end of a session that the desktop closes because it locks the screen, and the word that it has.
constexpr auto longestFromCloseToLock = 5s;

} // namespace

RemoteDesktop::RemoteDesktop(EventLoop& loop, Portal& portal, RestoreToken& token, QStringList backEnds)
    : loop_(loop),
      portal_(portal),
      token_(token),
      backEnds_(std::move(backEnds)),
      parts_(withoutRemoteControl(notAnswered)) {
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, [this] {
        if (state_ == State::connecting) {
            giveInputUp();
        } else {
            end();
        }
    });
    connect(&portal_, &Portal::appeared, this, &RemoteDesktop::askVersion);
    connect(&portal_, &Portal::vanished, this, [this] { withdraw(noPortal); });
    if (portal_.isThere()) {
        askVersion();
    }
}

RemoteDesktop::~RemoteDesktop() {
    changed_ = {};
    end();
}

void RemoteDesktop::askVersion() {
    for (const QString& name : backEnds_) {
        portal_.listenToName(name, this, SLOT(backEndChanged(QString, QString, QString)));
    }
    portal_.askVersion(remoteDesktop, this, [this](uint version) { offer(version); });
}

void RemoteDesktop::offer(uint version) {
    if (version == 0) {
        withdraw(noInterface);
        return;
    }
    version_ = version;
    // Not owned: this is no more shared than the portal.
    const std::shared_ptr<InputTrust> trust(std::shared_ptr<void>(), this);
    parts_.set(withRemoteControl(events_, trust, version, portal_.nameError()));
}

void RemoteDesktop::withdraw(const std::string& why) {
    version_ = 0;
    end();
    parts_.set(withoutRemoteControl(why));
}

bool RemoteDesktop::isTrusted() {
    return state_ == State::open && events_->canPost();
}

bool RemoteDesktop::requestPrompt(PromptReason reason) {
    if (isLocked_ || version_ == 0 || (reason == PromptReason::automatic && std::exchange(hasAskedByItself_, true))) {
        return isTrusted();
    }
    if (state_ == State::open && !isTrusted()) {
        end();
    }
    if (state_ == State::idle) {
        ask(Manner::mayShowDialog);
    } else if (std::exchange(manner_, Manner::mayShowDialog) == Manner::withoutDialog && state_ == State::starting) {
        patience_.stop();
    }
    return isTrusted();
}

void RemoteDesktop::setLocked(bool isLocked) {
    if (std::exchange(isLocked_, isLocked) == isLocked) {
        return;
    }
    if (isLocked) {
        // Some desktops close the session themselves, and tell of the lock after that.
        isResumedWhenUnlocked_ = state_ == State::open || !justClosed_.hasExpired();
        end();
    } else if (isResumedWhenUnlocked_ && state_ == State::idle && remembers()) {
        ask(Manner::withoutDialog);
    }
}

bool RemoteDesktop::remembers() const {
    return version_ >= firstThatRemembers && !token_.get().empty() && !isTokenDoubtful_;
}

void RemoteDesktop::backEndChanged(const QString& name, const QString& oldOwner, const QString& /*newOwner*/) {
    if (!oldOwner.isEmpty() && !bystanders_.contains(name)) {
        end();
    }
}

/// Which of them the portal has taken is not told; but whoever is not there while the session opens is not the one.
void RemoteDesktop::lookForBystanders() {
    bystanders_.clear();
    for (const QString& name : backEnds_) {
        portal_.askForOwner(name, this, [this, name, session = session_->path()](bool isOwned) {
            if (!isOwned && session_ && session_->path() == session) {
                bystanders_.append(name);
            }
        });
    }
}

void RemoteDesktop::ask(Manner manner) {
    state_ = State::asking;
    manner_ = manner;
    patience_.start(longestWaitWithoutUser);
    session_ = std::make_unique<PortalSession>(portal_, remoteDesktop);
    connect(session_.get(), &PortalSession::opened, this, &RemoteDesktop::selectDevices);
    connect(session_.get(), &PortalSession::ended, this, &RemoteDesktop::end);
}

void RemoteDesktop::selectDevices() {
    lookForBystanders();
    QVariantMap options{{QStringLiteral("types"), pointerDevice}};
    if (version_ >= firstThatRemembers) {
        options.insert(QStringLiteral("persist_mode"), untilRevoked);
        if (remembers()) {
            options.insert(restoreToken, QString::fromStdString(token_.get()));
        }
    }
    request_ = session_->request(QStringLiteral("SelectDevices"), {}, options, [this](const PortalResponse& response) {
        if (response.outcome == Outcome::granted) {
            start();
        } else {
            // The portal itself refuses what cannot be a token. One that says nothing has not looked at it.
            isTokenDoubtful_ = isTokenDoubtful_ || response.outcome == Outcome::failed ||
                               (response.outcome == Outcome::unavailable && !response.isSilence);
            end();
        }
    });
}

void RemoteDesktop::start() {
    state_ = State::starting;
    if (manner_ == Manner::mayShowDialog) {
        // Whoever is shown it may take any time.
        patience_.stop();
    } else {
        patience_.start(longestWaitWithoutDialog);
    }
    // No window is named: how to name one on Wayland the toolkit does not tell.
    request_ = session_->request(QStringLiteral("Start"), {QString()}, {},
                                 [this](const PortalResponse& response) { started(response); });
}

void RemoteDesktop::started(const PortalResponse& response) {
    patience_.stop();
    if (response.outcome != Outcome::granted) {
        // Whether it was the token that was not taken, is not told.
        isTokenDoubtful_ = isTokenDoubtful_ || response.outcome == Outcome::failed;
        end();
        return;
    }
    if (version_ >= firstThatRemembers) {
        // The last one may have been good for one use only. A desktop that gives none remembers nothing any more.
        token_.set(response.results.value(restoreToken).toString().toStdString());
    }
    // What the desktop remembers may be a grant without the pointer: then only its dialog helps.
    isTokenDoubtful_ = (response.results.value(QStringLiteral("devices")).toUInt() & pointerDevice) == 0;
    if (isTokenDoubtful_) {
        end();
        return;
    }
    manner_ = Manner::mayShowDialog;
    request_.reset();
    connectToInput();
}

void RemoteDesktop::end() {
    const State before = std::exchange(state_, State::idle);
    if (before == State::idle) {
        return;
    }
    if (before == State::open) {
        justClosed_.setRemainingTime(longestFromCloseToLock);
    }
    patience_.stop();
    events_->use(nullptr);
    request_.reset();
    // It may go on for as long as a click is under way, and concerns nobody any more.
    session_->disconnect(this);
    if (const auto sender = std::exchange(sender_, nullptr)) {
        sender->end(std::move(session_));
    }
    session_.reset();
    tell();
}

void RemoteDesktop::tell() {
    if (changed_) {
        changed_();
    }
}

} // namespace velloran::platform::portal
