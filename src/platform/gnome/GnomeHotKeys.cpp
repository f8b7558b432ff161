#include "platform/gnome/GnomeHotKeys.h"

#include <QVariant>

#include "keys/KeyCodes.h"

#include <string>
#include <utility>

namespace velloran::platform::gnome {

namespace {

/// A bus that takes longer is not waited for any more, and heard all the same.
constexpr std::uint64_t longestWait = 30 * nanosecondsPerSecond;

/// How long settings that cannot be changed are left alone.
constexpr std::uint64_t retryInterval = 10 * nanosecondsPerSecond;

constexpr auto notAgreed = "You have not agreed to put the hotkey among your shortcuts.";
constexpr auto notThere = "The shortcut is not among those in the desktop's settings any more.";
constexpr auto noHotkey = "The global hotkey does not work here.";

const auto settingsPath = QStringLiteral("/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings");

DesktopPart<HotKeys> awaited() {
    return {nullptr, "The session bus has not said yet whether GNOME binds keys here.", noHotkey, true};
}

} // namespace

GnomeHotKeys::GnomeHotKeys(EventLoop& loop, bus::SessionBus& bus, const QString& address, HotkeyConsent& consent,
                           keys::CurrentLayout layout, std::function<bool()> wouldEnd)
    : loop_(loop),
      consent_(consent),
      layout_(std::move(layout)),
      wouldEnd_(std::move(wouldEnd)),
      service_(bus, QStringLiteral("org.gnome.SettingsDaemon.MediaKeys")),
      command_(bus),
      part_(awaited()),
      patience_(loop, loop.callAfter(longestWait,
                                     [this] {
                                         if (part_.get().isAwaited) {
                                             part_.set({});
                                         }
                                     })),
      tool_(address),
      entry_(tool_, PressCommand::text()) {
    connect(&command_, &PressCommand::pressed, this, &GnomeHotKeys::pressed);
    connect(&service_, &bus::BusService::appeared, this, &GnomeHotKeys::probe);
    connect(&service_, &bus::BusService::missing, this, [this] { part_.set({}); });
}

GnomeHotKeys::~GnomeHotKeys() {
    registration_.reset();
    advance();
    tool_.finish();
}

void GnomeHotKeys::probe() {
    if (part_.get().part) {
        // The entry outlives the service, and the bus need not.
        serve();
    } else if (!std::exchange(isProbed_, true)) {
        entry_.probe([this](bool isThere) { isThere ? offer() : part_.set({}); });
    }
}

void GnomeHotKeys::offer() {
    serve();
    // Not owned: this is no more shared than the bus.
    part_.set({std::shared_ptr<HotKeys>(std::shared_ptr<void>(), this),
               "The hotkey goes among your own shortcuts in the desktop's settings, once you have agreed.",
               {}});
    // What a killed program has left, where nobody wants it any more.
    cleaning_ = ScheduledCall(loop_, loop_.callAfter(nanosecondsPerSecond, [this] { advance(); }));
}

void GnomeHotKeys::serve() {
    command_.serve();
    service_.listen(QStringLiteral("/ca/desrt/dconf/Writer/user"), QStringLiteral("ca.desrt.dconf.Writer"),
                    QStringLiteral("Notify"), this, SLOT(settingsChanged(QDBusMessage)));
}

Subscription GnomeHotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription GnomeHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                          AnswerReceiver answered) {
    const std::string symbol = symbolOf(keyCode);
    if (registration_ || symbol.empty() || !part_.get().part) {
        answered({registration_ ? hotKeyExistsError : hotKeyInvalidError, {}});
        return {};
    }
    const auto registration = std::make_shared<Registration>(id, std::move(answered), loop_, wouldEnd_, [this, id] {
        const HotKeyEvent event{id};
        handlers_.notify(&event);
    });
    registration->wanted = {modifiers, symbol};
    registration_ = registration;
    advance();
    return registeredUntil(registration, [this](const RegistrationRef& ending) {
        if (ending == registration_) {
            registration_.reset();
            advance();
        }
    });
}

std::string GnomeHotKeys::symbolOf(std::uint32_t keyCode) const {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    if (!evdevCode) {
        return {};
    }
    return keys::fromLayout(layout_, [&](const keys::KeyboardLayout& layout) { return layout.symbolName(*evdevCode); });
}

/// Takes the next step towards what is wanted now. Whatever comes to an end calls it again.
void GnomeHotKeys::advance() {
    if (isBusy_ || !part_.get().part) {
        return;
    }
    if (registration_) {
        continueWith(registration_);
    } else if (state_ != Entry::isAway) {
        remove();
    }
}

void GnomeHotKeys::continueWith(const RegistrationRef& registration) {
    switch (registration->stage) {
    case Registration::Stage::isNew:
        look(registration);
        break;
    case Registration::Stage::isFree:
        if (state_ == Entry::isThere) {
            remove();
        } else {
            ask(registration);
        }
        break;
    case Registration::Stage::isAsking:
        break;
    case Registration::Stage::isAgreed:
        put(registration);
        break;
    case Registration::Stage::isBound:
        if (std::exchange(registration->isStale, false)) {
            look(registration);
        }
        break;
    }
}

void GnomeHotKeys::look(const RegistrationRef& registration) {
    isBusy_ = true;
    entry_.look(registration->wanted, [this, asked = std::weak_ptr(registration)](const auto& found) {
        isBusy_ = false;
        if (found.isReadable) {
            state_ = found.isListed ? Entry::isThere : Entry::isAway;
        }
        const auto looking = asked.lock();
        if (looking && looking == registration_) {
            sort(looking, found);
        }
        advance();
    });
}

void GnomeHotKeys::sort(const RegistrationRef& registration, const ShortcutEntry::Found& found) {
    if (registration->stage == Registration::Stage::isBound) {
        tell(registration, found);
    } else if (!found.isReadable) {
        refuse(registration, {hotKeyInvalidError, {}});
    } else if (found.isTaken) {
        refuse(registration, {hotKeyExistsError, {}, false, found.holder});
    } else if (found.isOurs) {
        // Somebody has agreed to just that.
        registration->stage = Registration::Stage::isBound;
        tell(registration, found);
    } else {
        registration->stage = Registration::Stage::isFree;
    }
}

void GnomeHotKeys::ask(const RegistrationRef& registration) {
    registration->stage = Registration::Stage::isAsking;
    registration->question =
        consent_.ask(registration->wanted.words(), [this, asked = std::weak_ptr(registration)](bool agreed) {
            const auto asking = asked.lock();
            if (!asking || asking != registration_) {
                return;
            }
            if (agreed) {
                asking->stage = Registration::Stage::isAgreed;
            } else {
                refuse(asking, {hotKeyInvalidError, {}, false, {}, notAgreed});
            }
            advance();
        });
}

void GnomeHotKeys::put(const RegistrationRef& registration) {
    isBusy_ = true;
    state_ = Entry::isThere;
    entry_.put(registration->wanted, [this, asked = std::weak_ptr(registration)](bool isDone) {
        isBusy_ = false;
        const auto binding = asked.lock();
        if (binding && binding == registration_) {
            if (isDone) {
                binding->stage = Registration::Stage::isBound;
                binding->isStale = true;
            } else {
                refuse(binding, {hotKeyInvalidError, {}});
            }
        }
        advance();
    });
}

void GnomeHotKeys::remove() {
    isBusy_ = true;
    entry_.remove([this](bool isAway) {
        isBusy_ = false;
        if (isAway) {
            state_ = Entry::isAway;
            advance();
        } else {
            tryAgain();
        }
    });
}

/// Later, where it is known to be there; the end of the program tries once more in any case.
void GnomeHotKeys::tryAgain() {
    if (state_ == Entry::isThere) {
        cleaning_ = ScheduledCall(loop_, loop_.callAfter(retryInterval, [this] { advance(); }));
    }
    if (registration_ && registration_->stage == Registration::Stage::isFree) {
        const RegistrationRef waiting = registration_;
        refuse(waiting, {hotKeyInvalidError, {}});
    } else if (registration_) {
        advance();
    }
}

/// Its user may change it in the desktop's settings like any other shortcut.
void GnomeHotKeys::tell(const RegistrationRef& registration, const ShortcutEntry::Found& found) {
    if (!found.isReadable && registration->claim.isAnswered()) {
        // The settings could not be asked. What is bound stays so.
        return;
    }
    HotKeyAnswer now;
    if (!found.isReadable) {
        now.status = hotKeyInvalidError;
    } else if (!found.isListed) {
        now.status = hotKeyInvalidError;
        now.reason = notThere;
    } else if (found.binding.empty()) {
        now.hasNoTrigger = true;
    } else if (const auto bound = Accelerator::read(found.binding); bound != registration->wanted) {
        now.otherTrigger = bound ? bound->words() : found.binding;
    }
    registration->claim.answer(now);
}

void GnomeHotKeys::refuse(const RegistrationRef& registration, const HotKeyAnswer& answer) {
    registration_.reset();
    registration->claim.answer(answer);
}

void GnomeHotKeys::pressed() {
    if (registration_ && registration_->stage == Registration::Stage::isBound) {
        // It may be what ends it.
        const RegistrationRef registration = registration_;
        registration->filter.hear();
    }
}

void GnomeHotKeys::settingsChanged(const QDBusMessage& message) {
    const QString changed = message.arguments().value(0).toString();
    const bool isOfOurs = !changed.isEmpty() && (changed.startsWith(settingsPath) || settingsPath.startsWith(changed));
    if (isOfOurs && registration_ && registration_->stage == Registration::Stage::isBound) {
        registration_->isStale = true;
        advance();
    }
}

} // namespace velloran::platform::gnome
