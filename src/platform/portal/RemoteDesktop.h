#pragma once

#include "platform/portal/Portal.h"
#include "platform/portal/PortalPointerEvents.h"
#include "platform/portal/PortalSession.h"
#include "platform/portal/RestoreToken.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include "async/EventLoop.h"
#include "async/Published.h"
#include "platform/Desktop.h"
#include "platform/InputTrust.h"

#include <functional>
#include <memory>

namespace velloran::platform::portal {

/// Clicks through the desktop's portal, and the permission for them: a session of the interface `RemoteDesktop`, which
/// the user grants in the desktop's dialog. The dialog opens by itself once in a run of the program at most; a
/// permission that was refused, or that the desktop took back, comes again only when the user asks for it. What was
/// granted before is granted again without a dialog where the desktop remembers it. Nothing here waits. Main thread but
/// for the clicks.
class RemoteDesktop final : public QObject, public InputTrust {
    Q_OBJECT

public:
    /// `portal` is one with a connection of its own, which has been given the program's name. `backEnds` are the bus
    /// names of those that may stand behind it: some portals take clicks without a word when theirs has gone. All that
    /// is given has to outlive this.
    RemoteDesktop(EventLoop& loop, Portal& portal, RestoreToken& token, QStringList backEnds);
    RemoteDesktop(const RemoteDesktop&) = delete;
    RemoteDesktop& operator=(const RemoteDesktop&) = delete;
    ~RemoteDesktop() override;

    /// Clicks and trust, as soon as and for as long as the portal says that it has the interface; else neither, and
    /// why. This has to outlive whoever uses the trust.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

    /// The screen has been locked: nothing may click into that, so the session ends. Unlocked again, what the desktop
    /// remembers is tried; nobody is asked.
    void setLocked(bool isLocked);

    bool isTrusted() override;
    bool requestPrompt(PromptReason reason) override;

    void onChanged(std::function<void()> changed) override { changed_ = std::move(changed); }

private slots:
    void backEndChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    enum class State {
        idle,
        asking,
        starting,
        /// Granted, but there is nothing to click with yet.
        connecting,
        open,
    };
    /// What a question may do to be granted.
    enum class Manner { mayShowDialog, withoutDialog };

    void askVersion();
    void offer(uint version);
    void withdraw(const std::string& why);

    void ask(Manner manner);
    [[nodiscard]] bool remembers() const;
    void lookForBystanders();
    void selectDevices();
    void start();
    void started(const PortalResponse& response);
    void connectToInput();
    void giveInputUp();
    void useCalls();
    void use(std::shared_ptr<ClickSender> sender);
    void end();
    void tell();

    EventLoop& loop_;
    Portal& portal_;
    RestoreToken& token_;
    const QStringList backEnds_;
    Published<Desktop> parts_;
    const std::shared_ptr<PortalPointerEvents> events_ = std::make_shared<PortalPointerEvents>();
    std::function<void()> changed_;

    /// 0 while there is none.
    uint version_ = 0;
    State state_ = State::idle;
    Manner manner_ = Manner::mayShowDialog;
    bool isLocked_ = false;
    bool hasAskedByItself_ = false;
    QDeadlineTimer justClosed_{0};
    bool isResumedWhenUnlocked_ = false;
    /// The desktop did not take it when it was last tried.
    bool isTokenDoubtful_ = false;
    /// The connection for emulated input came to nothing.
    bool isInputUnusable_ = false;
    /// Back ends that have nothing to do with the session.
    QStringList bystanders_;
    std::shared_ptr<ClickSender> sender_;
    std::unique_ptr<PortalSession> session_;
    std::unique_ptr<PortalRequest> request_;
    /// Gives up.
    QTimer patience_;
};

} // namespace velloran::platform::portal
