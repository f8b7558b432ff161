#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "async/Published.h"
#include "keys/CurrentLayout.h"
#include "platform/Desktop.h"
#include "platform/HotKeyClaim.h"
#include "platform/HotKeys.h"
#include "platform/HotkeyConsent.h"
#include "platform/bus/BusService.h"
#include "platform/gnome/Accelerator.h"
#include "platform/gnome/PressCommand.h"
#include "platform/gnome/RepetitionFilter.h"
#include "platform/gnome/SettingsTool.h"
#include "platform/gnome/ShortcutEntry.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace velloran::platform::gnome {

/// A hot key as one of the user's own shortcuts in GNOME's settings, for which its user is asked first. The desktop
/// runs a command for a press, which reaches this over the session bus by a name of its own, one that starts nothing.
/// The entry is there while the hot key is registered; one that a killed program has left is taken over, or away. The
/// key is the one that gives its symbol in the layout at the time. Nothing but the end waits. Main thread.
class GnomeHotKeys final : public QObject, public HotKeys {
    Q_OBJECT

public:
    /// `address` is where the bus is. Without a `layout` it is the system's default. `wouldEnd` tells whether a press
    /// would end something now. All that is given has to outlive this.
    GnomeHotKeys(EventLoop& loop, bus::SessionBus& bus, const QString& address, HotkeyConsent& consent,
                 keys::CurrentLayout layout, std::function<bool()> wouldEnd);
    GnomeHotKeys(const GnomeHotKeys&) = delete;
    GnomeHotKeys& operator=(const GnomeHotKeys&) = delete;
    /// Takes the entry away. Waits for that, a second at most for each command that it takes.
    ~GnomeHotKeys() override;

    /// These, from when GNOME's service for keys is first seen, where its settings have such entries; an empty part
    /// where they have not. Awaited until that is known, half a minute at most. This has to outlive whoever uses them.
    [[nodiscard]] const Published<DesktopPart<HotKeys>>& part() const { return part_; }

    Subscription installHandler(Handler handler) override;
    /// One at a time: a further one counts as taken.
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private slots:
    void settingsChanged(const QDBusMessage& message);

private:
    struct Registration {
        /// How far it has come.
        enum class Stage { isNew, isFree, isAsking, isAgreed, isBound };

        Registration(HotKeyId id, AnswerReceiver answered, EventLoop& loop, const std::function<bool()>& wouldEnd,
                     std::function<void()> pressed)
            : claim(id, std::move(answered)), filter(loop, wouldEnd, std::move(pressed)) {}

        HotKeyClaim claim;
        Accelerator wanted;
        Stage stage = Stage::isNew;
        /// Whether the entry is to be looked at again.
        bool isStale = false;
        Subscription question;
        RepetitionFilter filter;
    };

    using RegistrationRef = std::shared_ptr<Registration>;
    enum class Entry { isUnknown, isThere, isAway };

    void probe();
    void offer();
    void serve();
    void advance();
    void continueWith(const RegistrationRef& registration);
    void look(const RegistrationRef& registration);
    void sort(const RegistrationRef& registration, const ShortcutEntry::Found& found);
    void ask(const RegistrationRef& registration);
    void put(const RegistrationRef& registration);
    void remove();
    void tryAgain();
    void tell(const RegistrationRef& registration, const ShortcutEntry::Found& found);
    void refuse(const RegistrationRef& registration, const HotKeyAnswer& answer);
    void pressed();
    [[nodiscard]] std::string symbolOf(std::uint32_t keyCode) const;

    EventLoop& loop_;
    HotkeyConsent& consent_;
    const keys::CurrentLayout layout_;
    const std::function<bool()> wouldEnd_;
    bus::BusService service_;
    PressCommand command_;
    Published<DesktopPart<HotKeys>> part_;
    ScheduledCall patience_;
    ScheduledCall cleaning_;
    Observers<const HotKeyEvent*> handlers_;
    RegistrationRef registration_;
    Entry state_ = Entry::isUnknown;
    bool isProbed_ = false;
    /// While the desktop's tool is at work.
    bool isBusy_ = false;
    SettingsTool tool_;
    ShortcutEntry entry_;
};

} // namespace velloran::platform::gnome
