#include "platform/portal/PortalShortcut.h"

#include <QDBusObjectPath>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace velloran::platform::portal {

namespace {

using Outcome = PortalResponse::Outcome;

/// For everything that needs no user.
constexpr std::uint64_t longestWaitForShortcut = 30 * nanosecondsPerSecond;

const auto shortcutsKey = QStringLiteral("shortcuts");

} // namespace

PortalShortcut::PortalShortcut(EventLoop& loop, Portal& portal, Wish wish)
    : loop_(loop), portal_(portal), wish_(std::move(wish)), key_(loop), session_(portal, shortcutsInterface) {
    registerShortcuts();
    portal_.listen(portalPath, shortcutsInterface, QStringLiteral("Activated"), this, SLOT(activated(QDBusMessage)));
    portal_.listen(portalPath, shortcutsInterface, QStringLiteral("Deactivated"), this,
                   SLOT(deactivated(QDBusMessage)));
    portal_.listen(portalPath, shortcutsInterface, QStringLiteral("ShortcutsChanged"), this,
                   SLOT(changed(QDBusMessage)));
    connect(&session_, &PortalSession::opened, this, &PortalShortcut::bind);
    connect(&session_, &PortalSession::ended, this, [this] { end(&PortalShortcut::ended); });
    waitFor([this] { end(&PortalShortcut::ended); });
}

void PortalShortcut::check() {
    isDoubtful_ = true;
    if (state_ == State::bound || state_ == State::unbound) {
        list(Question::whatChanged);
    }
}

void PortalShortcut::bind() {
    state_ = State::binding;
    // Whoever is shown a dialog may take any time.
    patience_.cancel();
    const ShortcutList shortcuts{
        {wish_.identifier,
         {{QStringLiteral("description"), wish_.description}, {QStringLiteral("preferred_trigger"), wish_.trigger}}}};
    request_ = session_.request(QStringLiteral("BindShortcuts"), {QVariant::fromValue(shortcuts), QString()}, {},
                                [this](const PortalResponse& response) { bindingAnswered(response); });
}

/// The truth is in the results: some desktops say that it failed when it did not, or that it did not and bind nothing.
void PortalShortcut::bindingAnswered(const PortalResponse& response) {
    if (takeFrom(shortcutsIn(response.results.value(shortcutsKey)))) {
        return;
    }
    switch (response.outcome) {
    case Outcome::refused:
        end(&PortalShortcut::refused);
        break;
    case Outcome::granted:
    case Outcome::failed:
        list(Question::whetherBound);
        break;
    case Outcome::unavailable:
    case Outcome::lost:
        end(&PortalShortcut::ended);
        break;
    }
}

void PortalShortcut::list(Question question) {
    waitFor([this, question] { listed(question, {}); });
    request_ = session_.request(QStringLiteral("ListShortcuts"), {}, {},
                                [this, question](const PortalResponse& response) { listed(question, response); });
}

void PortalShortcut::listed(Question question, const PortalResponse& response) {
    patience_.cancel();
    if (takeFrom(shortcutsIn(response.results.value(shortcutsKey)))) {
        return;
    }
    if (question == Question::whetherBound) {
        end(response.outcome == Outcome::granted ? &PortalShortcut::refused : &PortalShortcut::ended);
    } else if (isDoubtful_) {
        end(&PortalShortcut::gone);
    } else {
        state_ = State::unbound;
        key_.forget();
        emit unbound();
    }
}

/// Whether it is among them; then that is told.
bool PortalShortcut::takeFrom(const ShortcutList& shortcuts) {
    const auto found = std::find_if(shortcuts.begin(), shortcuts.end(), [this](const Shortcut& shortcut) {
        return shortcut.identifier == wish_.identifier;
    });
    if (found == shortcuts.end()) {
        return false;
    }
    state_ = State::bound;
    isDoubtful_ = false;
    emit bound(found->properties.value(QStringLiteral("trigger_description")).toString());
    return true;
}

void PortalShortcut::end(void (PortalShortcut::*signal)()) {
    if (std::exchange(state_, State::over) != State::over) {
        patience_.cancel();
        request_.reset();
        emit(this->*(isDoubtful_ && signal == &PortalShortcut::ended ? &PortalShortcut::gone : signal))();
    }
}

bool PortalShortcut::isOurs(const QDBusMessage& message) const {
    return portal_.isFrom(message) && message.arguments().value(0).value<QDBusObjectPath>().path() == session_.path() &&
           state_ != State::over;
}

void PortalShortcut::activated(const QDBusMessage& message) {
    if (!isOurs(message) || message.arguments().value(1).toString() != wish_.identifier) {
        return;
    }
    if (key_.press()) {
        emit pressed();
    }
}

void PortalShortcut::deactivated(const QDBusMessage& message) {
    if (isOurs(message) && message.arguments().value(1).toString() == wish_.identifier) {
        key_.release();
    }
}

void PortalShortcut::changed(const QDBusMessage& message) {
    if (!isOurs(message) || (state_ != State::bound && state_ != State::unbound)) {
        return;
    }
    // Whether these are all or those that changed is not said.
    if (!takeFrom(shortcutsIn(message.arguments().value(1)))) {
        list(Question::whatChanged);
    }
}

void PortalShortcut::waitFor(std::function<void()> giveUp) {
    patience_ = ScheduledCall(loop_, loop_.callAfter(longestWaitForShortcut, std::move(giveUp)));
}

} // namespace velloran::platform::portal
