#include "platform/portal/PortalHotKeys.h"

#include "platform/portal/shortcutTrigger.h"

#include <algorithm>
#include <string>
#include <utility>

namespace velloran::platform::portal {

namespace {

/// Nobody is thought to answer any more who takes longer to say what there is.
constexpr std::uint64_t longestWaitForPortal = 30 * nanosecondsPerSecond;

/// So often a shortcut is asked for by itself before it is left alone.
constexpr int mostFailures = 3;

constexpr auto noHotkey = "The global hotkey does not work here.";
constexpr auto noAnswer = "The global hotkey does not work here: the desktop's portal does not answer.";
constexpr auto noShortcuts = "The global hotkey does not work here: the desktop's portal offers none.";

DesktopPart<HotKeys> awaited() {
    return {nullptr, "The desktop's portal has not said yet whether it offers a hotkey.", noHotkey, true};
}

/// Newer portals bind keys only for programs that they know, and some desktops discard those of others.
std::string limitOf(const Portal& portal) {
    if (portal.nameError().isEmpty() || !portal.takesNames()) {
        return {};
    }
    return "This desktop does not know the program by its name, so it may refuse the hotkey: " +
           portal.nameError().toStdString();
}

/// Whoever answers all the same is heard.
bool stopAwaiting(DesktopPart<HotKeys>& part) {
    return std::exchange(part.isAwaited, false);
}

} // namespace

PortalHotKeys::PortalHotKeys(EventLoop& loop, Portal& portal, QStringList backEnds, keys::CurrentLayout layout)
    : loop_(loop),
      portal_(portal),
      backEnds_(std::move(backEnds)),
      layout_(std::move(layout)),
      part_(awaited()),
      patience_(loop, loop.callAfter(longestWaitForPortal, [this] { part_.modify(stopAwaiting); })) {
    connect(&portal_, &Portal::appeared, this, &PortalHotKeys::askVersion);
    connect(&portal_, &Portal::vanished, this, [this] { withdraw(noAnswer); });
    connect(&portal_, &Portal::missing, this, [this] { withdraw(noHotkey); });
    if (portal_.isThere()) {
        askVersion();
    }
}

PortalHotKeys::~PortalHotKeys() = default;

void PortalHotKeys::askVersion() {
    for (const QString& name : backEnds_) {
        portal_.listenToName(name, this, SLOT(backEndChanged(QString, QString, QString)));
    }
    portal_.askVersion(shortcutsInterface, this, [this](uint version) { offer(version); });
}

void PortalHotKeys::offer(uint version) {
    if (version == 0) {
        withdraw(noShortcuts);
        return;
    }
    isOffered_ = true;
    bindWhatIsMissing();
    // Not owned: this is no more shared than the portal.
    part_.set({std::shared_ptr<HotKeys>(std::shared_ptr<void>(), this),
               "The hotkey is a shortcut of the desktop's portal, which may ask before it binds one.",
               limitOf(portal_)});
}

void PortalHotKeys::withdraw(const std::string& limit) {
    isOffered_ = false;
    for (const RegistrationRef& registration : registrations_) {
        registration->shortcut.reset();
    }
    part_.set({nullptr, limit, limit});
    const auto left = registrations_;
    for (const RegistrationRef& registration : left) {
        if (registration->claim.isAnswered()) {
            lose(registration);
        }
    }
}

Subscription PortalHotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription PortalHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                           AnswerReceiver answered) {
    const QString trigger = triggerFor(keyCode, modifiers);
    if (trigger.isEmpty() || !isOffered_) {
        answered({hotKeyInvalidError, {}});
        return {};
    }
    const QString identifier = identifierOf(trigger);
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& other) {
        return other->wish.identifier == identifier && !other->isRefused;
    });
    if (isOwn) {
        answered({hotKeyExistsError, {}});
        return {};
    }
    const auto registration = std::make_shared<Registration>(id, std::move(answered));
    registration->wish = {identifier, QStringLiteral("Start or stop clicking"), trigger};
    registrations_.push_back(registration);
    bind(registration);
    return registeredUntil(registration, [this](const RegistrationRef& ending) { end(ending); });
}

QString PortalHotKeys::triggerFor(std::uint32_t keyCode, std::uint32_t modifiers) const {
    return keys::fromLayout(layout_,
                            [&](const keys::KeyboardLayout& layout) { return triggerOf(keyCode, modifiers, layout); });
}

void PortalHotKeys::bind(const RegistrationRef& registration) {
    // Counted now: it may be what ends the portal.
    if (failures_[registration->wish.identifier]++ >= mostFailures) {
        lose(registration);
        return;
    }
    registration->shortcut = std::make_unique<PortalShortcut>(loop_, portal_, registration->wish);
    const auto* const shortcut = registration->shortcut.get();
    const std::weak_ptr observed = registration;
    connect(shortcut, &PortalShortcut::bound, this, [this, observed](const QString& words) {
        if (const auto asked = observed.lock()) {
            take(asked, words);
        }
    });
    connect(shortcut, &PortalShortcut::unbound, this, [observed] {
        if (const auto asked = observed.lock()) {
            asked->claim.answer({hotKeyInvalidError, {}});
        }
    });
    connect(shortcut, &PortalShortcut::refused, this, [this, observed] {
        if (const auto asked = observed.lock()) {
            failures_[asked->wish.identifier] = mostFailures;
            lose(asked);
        }
    });
    connect(shortcut, &PortalShortcut::ended, this, [this, observed] {
        if (const auto asked = observed.lock()) {
            lose(asked);
        }
    });
    connect(shortcut, &PortalShortcut::gone, this, [this, observed] {
        if (const auto asked = observed.lock()) {
            bindAgain(asked);
        }
    });
    connect(shortcut, &PortalShortcut::pressed, this, [this, observed] {
        if (const auto asked = observed.lock()) {
            const HotKeyEvent event = asked->claim.press();
            handlers_.notify(&event);
        }
    });
}

void PortalHotKeys::bindAgain(const RegistrationRef& registration) {
    registration->shortcut.reset();
    registration->claim.lose();
    bindWhatIsMissing();
}

void PortalHotKeys::bindWhatIsMissing() {
    const auto all = registrations_;
    for (const RegistrationRef& registration : all) {
        if (!registration->isRefused && !registration->shortcut && isOffered_) {
            bind(registration);
        }
    }
}

void PortalHotKeys::take(const RegistrationRef& registration, const QString& words) {
    failures_.erase(registration->wish.identifier);
    HotKeyAnswer taken;
    taken.hasNoTrigger = words.isEmpty();
    if (!saysTrigger(words, registration->wish.trigger)) {
        taken.otherTrigger = words.toStdString();
    }
    registration->claim.answer(taken);
}

void PortalHotKeys::lose(const RegistrationRef& registration) {
    registration->shortcut.reset();
    registration->isRefused = registration->isRefused || !registration->claim.isAnswered();
    registration->claim.answer({hotKeyInvalidError, {}});
}

void PortalHotKeys::end(const RegistrationRef& registration) {
    std::erase(registrations_, registration);
    registration->shortcut.reset();
    if (isOffered_) {
        // Whoever wants it again, wants to be asked again.
        failures_.erase(registration->wish.identifier);
    }
}

void PortalHotKeys::backEndChanged(const QString& /*name*/, const QString& /*oldOwner*/, const QString& /*newOwner*/) {
    // It need not be the one that the portal uses.
    for (const RegistrationRef& registration : registrations_) {
        if (registration->shortcut) {
            registration->shortcut->check();
        }
    }
    bindWhatIsMissing();
}

} // namespace velloran::platform::portal
