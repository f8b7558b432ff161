#pragma once

#include <QObject>
#include <QString>

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "async/Published.h"
#include "keys/CurrentLayout.h"
#include "platform/Desktop.h"
#include "platform/HeldKey.h"
#include "platform/HotKeyClaim.h"
#include "platform/HotKeys.h"
#include "platform/bus/BusService.h"
#include "platform/plasma/KeySequence.h"
#include "platform/plasma/KeyboardGroup.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velloran::platform::plasma {

/// Hot keys as shortcuts of Plasma's own, which binds them without a question, says who has one that is taken, and
/// shows them in its settings. They are by symbol: which one the key gives is told by the layout, and another layout
/// has them bound anew, as a restart of Plasma's service does. Nothing here waits. Main thread.
class PlasmaHotKeys final : public QObject, public HotKeys {
    Q_OBJECT

public:
    /// Without a `layout` it is the system's default. All that is given has to outlive this.
    PlasmaHotKeys(EventLoop& loop, bus::SessionBus& bus, keys::CurrentLayout layout);
    PlasmaHotKeys(const PlasmaHotKeys&) = delete;
    PlasmaHotKeys& operator=(const PlasmaHotKeys&) = delete;
    /// Gives back what is bound.
    ~PlasmaHotKeys() override;

    /// These, from when Plasma's service is first seen: while it is away they wait for it to be back. Awaited until the
    /// bus has said whether it is there, half a minute at most. This has to outlive whoever uses them.
    [[nodiscard]] const Published<DesktopPart<HotKeys>>& part() const { return part_; }

    /// The layout tells something else from now on.
    void followLayout();

    Subscription installHandler(Handler handler) override;
    /// The number of the id is the shortcut's name for Plasma; one that is registered counts as taken.
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private slots:
    void pressed(const QDBusMessage& message);
    void released(const QDBusMessage& message);
    void changed(const QDBusMessage& message);

private:
    struct Registration {
        Registration(EventLoop& loop, HotKeyId id, AnswerReceiver answered)
            : claim(id, std::move(answered)), key(loop) {}

        HotKeyClaim claim;
        std::uint32_t keyCode = 0;
        std::uint32_t modifiers = 0;
        /// How Plasma calls it.
        QString name;
        /// What was asked for last.
        KeySequenceList wanted;
        /// Whether Plasma has heard of it.
        bool isKnown = false;
        bool isBound = false;
        HeldKey key;
    };

    using RegistrationRef = std::shared_ptr<Registration>;
    using Answered = std::function<void(const RegistrationRef&, const QDBusMessage&)>;

    void offer();
    void lose();
    [[nodiscard]] KeySequenceList sequencesOf(const Registration& registration) const;
    void bind(const RegistrationRef& registration);
    void check(const RegistrationRef& registration, qsizetype index);
    void askForHolder(const RegistrationRef& registration, const KeySequence& sequence);
    void set(const RegistrationRef& registration);
    void take(const RegistrationRef& registration, const KeySequenceList& bound);
    void refuse(const RegistrationRef& registration, const HotKeyAnswer& answer);
    void ask(const RegistrationRef& registration, const QString& method, const QVariantList& arguments,
             Answered answered);
    void release(Registration& registration);
    void end(const RegistrationRef& registration);
    [[nodiscard]] RegistrationRef named(const QString& component, const QString& name) const;

    EventLoop& loop_;
    const keys::CurrentLayout layout_;
    bus::BusService service_;
    KeyboardGroup group_;
    Published<DesktopPart<HotKeys>> part_;
    ScheduledCall patience_;
    Observers<const HotKeyEvent*> handlers_;
    std::vector<RegistrationRef> registrations_;
};

} // namespace velloran::platform::plasma
