#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "async/Published.h"
#include "keys/CurrentLayout.h"
#include "platform/Desktop.h"
#include "platform/HotKeyClaim.h"
#include "platform/HotKeys.h"
#include "platform/portal/Portal.h"
#include "platform/portal/PortalShortcut.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velloran::platform::portal {

/// Hot keys as shortcuts of the desktop's portal, which may ask its user about each and bind another key than it was
/// asked for. What goes with the portal, or with the back end behind it, is bound again when that is back; one that the
/// user did not want, or that did not come about three times in a row, is not asked for again before somebody registers
/// it anew. The key is the one that gives its symbol in the layout at the time. Nothing here waits. Main thread.
class PortalHotKeys final : public QObject, public HotKeys {
    Q_OBJECT

public:
    /// `portal` is one with a connection of its own, which has been given the program's name. `backEnds` are the bus
    /// names of those that may stand behind it: no portal tells when theirs has gone. Without a `layout` it is the
    /// system's default. All that is given has to outlive this.
    PortalHotKeys(EventLoop& loop, Portal& portal, QStringList backEnds, keys::CurrentLayout layout);
    PortalHotKeys(const PortalHotKeys&) = delete;
    PortalHotKeys& operator=(const PortalHotKeys&) = delete;
    ~PortalHotKeys() override;

    /// These, as soon as and for as long as the portal says that it has the interface; else none, and why. Awaited for
    /// half a minute at most. This has to outlive whoever uses them.
    [[nodiscard]] const Published<DesktopPart<HotKeys>>& part() const { return part_; }

    Subscription installHandler(Handler handler) override;
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private slots:
    void backEndChanged(const QString& name, const QString& oldOwner, const QString& newOwner);

private:
    struct Registration {
        Registration(HotKeyId id, AnswerReceiver answered) : claim(id, std::move(answered)) {}

        HotKeyClaim claim;
        PortalShortcut::Wish wish;
        /// None while the desktop has it not, and is not being asked.
        std::unique_ptr<PortalShortcut> shortcut;
        bool isRefused = false;
    };

    using RegistrationRef = std::shared_ptr<Registration>;

    void askVersion();
    void offer(uint version);
    void withdraw(const std::string& limit);

    void bind(const RegistrationRef& registration);
    void bindAgain(const RegistrationRef& registration);
    void bindWhatIsMissing();
    void take(const RegistrationRef& registration, const QString& words);
    void lose(const RegistrationRef& registration);
    void end(const RegistrationRef& registration);
    [[nodiscard]] QString triggerFor(std::uint32_t keyCode, std::uint32_t modifiers) const;

    EventLoop& loop_;
    Portal& portal_;
    const QStringList backEnds_;
    const keys::CurrentLayout layout_;
    Published<DesktopPart<HotKeys>> part_;
    ScheduledCall patience_;
    bool isOffered_ = false;
    Observers<const HotKeyEvent*> handlers_;
    std::vector<RegistrationRef> registrations_;
    /// How often each shortcut was asked for and not bound, since it last was.
    std::map<QString, int> failures_;
};

} // namespace velloran::platform::portal
