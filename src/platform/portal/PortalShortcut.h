#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>

#include "async/EventLoop.h"
#include "platform/HeldKey.h"
#include "platform/portal/PortalRequest.h"
#include "platform/portal/PortalSession.h"
#include "platform/portal/Shortcut.h"

#include <functional>
#include <memory>

namespace velloran::platform::portal {

/// The interface of the portal that binds keys for programs.
inline const auto shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

/// One shortcut that the portal is asked to bind, in a session of its own: destroying it gives the key back. The portal
/// may show its user a dialog for that, which may take any time; for all else it has half a minute. Main thread.
class PortalShortcut final : public QObject {
    Q_OBJECT

public:
    struct Wish {
        QString identifier;
        /// For the user to read.
        QString description;
        /// As `triggerOf`.
        QString trigger;
    };

    /// Asks for it. All signals come in later turns, and whoever is told may destroy this. What is given has to outlive
    /// this.
    PortalShortcut(EventLoop& loop, Portal& portal, Wish wish);
    PortalShortcut(const PortalShortcut&) = delete;
    PortalShortcut& operator=(const PortalShortcut&) = delete;
    ~PortalShortcut() override = default;

    /// Something has changed of what may stand behind the portal, which does not tell of that. If it is not bound any
    /// more, or will not be, that is because it has gone.
    void check();

signals:
    /// The desktop has bound it; told anew for each change. `words` say what has to be pressed, in the desktop's own
    /// way; empty while there is nothing.
    void bound(const QString& words);
    /// The desktop has taken it back, and may bind it again.
    void unbound();
    /// The user did not want it, or the desktop. Nothing follows.
    void refused();
    /// It could not be bound, or the desktop has closed its session. Nothing follows.
    void ended();
    /// It is not bound because something has changed behind the portal. Nothing follows.
    void gone();
    /// Once for a press, however long that is held.
    void pressed();

private slots:
    void activated(const QDBusMessage& message);
    void deactivated(const QDBusMessage& message);
    void changed(const QDBusMessage& message);

private:
    enum class State { opening, binding, bound, unbound, over };
    /// Why the portal is asked what it has.
    enum class Question { whetherBound, whatChanged };

    void bind();
    void bindingAnswered(const PortalResponse& response);
    void list(Question question);
    void listed(Question question, const PortalResponse& response);
    bool takeFrom(const ShortcutList& shortcuts);
    void end(void (PortalShortcut::*signal)());
    [[nodiscard]] bool isOurs(const QDBusMessage& message) const;
    void waitFor(std::function<void()> giveUp);

    EventLoop& loop_;
    Portal& portal_;
    const Wish wish_;
    State state_ = State::opening;
    bool isDoubtful_ = false;
    HeldKey key_;
    ScheduledCall patience_;
    PortalSession session_;
    std::unique_ptr<PortalRequest> request_;
};

} // namespace velloran::platform::portal
