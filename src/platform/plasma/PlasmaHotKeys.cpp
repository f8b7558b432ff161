#include "platform/plasma/PlasmaHotKeys.h"

#include <QKeySequence>
#include <QStringList>

#include "platform/plasma/toolkitKeys.h"

#include <algorithm>
#include <string>
#include <utility>

namespace velloran::platform::plasma {

namespace {

/// A bus that takes longer is not waited for any more, and heard all the same.
constexpr std::uint64_t longestWait = 30 * nanosecondsPerSecond;

/// Present, and just these keys: not those that the user once had for it.
constexpr uint asToldNow = 0x2 | 0x4;

constexpr auto noHotkey = "The global hotkey does not work here.";

const auto shortcutsPath = QStringLiteral("/kglobalaccel");
const auto shortcutsInterface = QStringLiteral("org.kde.KGlobalAccel");
const auto componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const auto ourComponent = QStringLiteral("app.velloran.Velloran");

DesktopPart<HotKeys> awaited() {
    return {nullptr, "The session bus has not said yet whether Plasma binds keys here.", noHotkey, true};
}

/// The names by which the user knows a shortcut, of the first in a list of such. Empty in anything else.
std::string holderIn(const QVariant& value) {
    const auto list = value.value<QDBusArgument>();
    if (!list.currentSignature().startsWith(QLatin1String("a(ssssss"))) {
        return {};
    }
    QString name;
    QString visibleName;
    QString program;
    QString visibleProgram;
    list.beginArray();
    if (!list.atEnd()) {
        list.beginStructure();
        list >> name >> visibleName >> program >> visibleProgram;
        list.endStructure();
    }
    // What is not ended is not given back.
    list.endArray();
    const QString action = visibleName.isEmpty() ? name : visibleName;
    const QString holder = visibleProgram.isEmpty() ? program : visibleProgram;
    if (holder.isEmpty() || action.isEmpty()) {
        return (holder + action).toStdString();
    }
    return QStringLiteral("%1 (%2)").arg(holder, action).toStdString();
}

} // namespace

PlasmaHotKeys::PlasmaHotKeys(EventLoop& loop, bus::SessionBus& bus, keys::CurrentLayout layout)
    : loop_(loop),
      layout_(std::move(layout)),
      service_(bus, QStringLiteral("org.kde.kglobalaccel")),
      group_(bus),
      part_(awaited()),
      patience_(loop, loop.callAfter(longestWait, [this] {
          part_.modify([](DesktopPart<HotKeys>& part) { return std::exchange(part.isAwaited, false); });
      })) {
    registerKeySequences();
    connect(&service_, &bus::BusService::appeared, this, &PlasmaHotKeys::offer);
    connect(&service_, &bus::BusService::vanished, this, &PlasmaHotKeys::lose);
    connect(&service_, &bus::BusService::missing, this, [this] { part_.set({nullptr, noHotkey, noHotkey}); });
    connect(&group_, &KeyboardGroup::changed, this, &PlasmaHotKeys::followLayout);
}

PlasmaHotKeys::~PlasmaHotKeys() {
    for (const RegistrationRef& registration : registrations_) {
        release(*registration);
    }
}

void PlasmaHotKeys::offer() {
    service_.listen({}, componentInterface, QStringLiteral("globalShortcutPressed"), this, SLOT(pressed(QDBusMessage)));
    service_.listen({}, componentInterface, QStringLiteral("globalShortcutReleased"), this,
                    SLOT(released(QDBusMessage)));
    service_.listen(shortcutsPath, shortcutsInterface, QStringLiteral("yourShortcutsChanged"), this,
                    SLOT(changed(QDBusMessage)));
    const auto all = registrations_;
    for (const RegistrationRef& registration : all) {
        bind(registration);
    }
    if (!part_.get().part) {
        // Not owned: this is no more shared than the bus.
        part_.set({std::shared_ptr<HotKeys>(std::shared_ptr<void>(), this),
                   "The hotkey is a shortcut of Plasma's, which lets programs register some.",
                   {}});
    }
}

void PlasmaHotKeys::lose() {
    const auto all = registrations_;
    for (const RegistrationRef& registration : all) {
        registration->claim.dropQuestion();
        registration->isKnown = false;
        registration->isBound = false;
        registration->key.forget();
        registration->claim.lose();
    }
}

void PlasmaHotKeys::followLayout() {
    const auto all = registrations_;
    for (const RegistrationRef& registration : all) {
        if (sequencesOf(*registration) != registration->wanted) {
            bind(registration);
        }
    }
}

Subscription PlasmaHotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription PlasmaHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                           AnswerReceiver answered) {
    const QString name = id.id == 1 ? QStringLiteral("toggle") : QStringLiteral("toggle-%1").arg(id.id);
    const auto registration = std::make_shared<Registration>(loop_, id, std::move(answered));
    registration->keyCode = keyCode;
    registration->modifiers = modifiers;
    registration->name = name;
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& other) {
        return other->name == name || (other->keyCode == keyCode && other->modifiers == modifiers);
    });
    if (isOwn || sequencesOf(*registration).isEmpty()) {
        registration->claim.answer({isOwn ? hotKeyExistsError : hotKeyInvalidError, {}});
        return {};
    }
    registrations_.push_back(registration);
    bind(registration);
    return registeredUntil(registration, [this](const RegistrationRef& ending) { end(ending); });
}

KeySequenceList PlasmaHotKeys::sequencesOf(const Registration& registration) const {
    return keys::fromLayout(layout_, [&](const keys::KeyboardLayout& layout) {
        return keySequencesOf(registration.keyCode, registration.modifiers, layout, group_.current());
    });
}

/// Plasma would bind over others without a word, so it is asked first.
void PlasmaHotKeys::bind(const RegistrationRef& registration) {
    registration->claim.dropQuestion();
    registration->wanted = sequencesOf(*registration);
    if (!service_.isThere()) {
        return;
    }
    if (registration->wanted.isEmpty()) {
        refuse(registration, {hotKeyInvalidError, {}});
    } else {
        check(registration, 0);
    }
}

void PlasmaHotKeys::check(const RegistrationRef& registration, qsizetype index) {
    if (index == registration->wanted.size()) {
        set(registration);
        return;
    }
    const KeySequence sequence = registration->wanted.at(index);
    ask(registration, QStringLiteral("globalShortcutAvailable"), {QVariant::fromValue(sequence), ourComponent},
        [this, index, sequence](const RegistrationRef& asked, const QDBusMessage& answer) {
            if (answer.type() != QDBusMessage::ReplyMessage) {
                refuse(asked, {hotKeyInvalidError, {}});
            } else if (answer.arguments().value(0).toBool()) {
                check(asked, index + 1);
            } else {
                askForHolder(asked, sequence);
            }
        });
}

void PlasmaHotKeys::askForHolder(const RegistrationRef& registration, const KeySequence& sequence) {
    ask(registration, QStringLiteral("globalShortcutsByKey"),
        {QVariant::fromValue(sequence), QVariant::fromValue(MatchType())},
        [this](const RegistrationRef& asked, const QDBusMessage& answer) {
            HotKeyAnswer taken{hotKeyExistsError, {}};
            taken.holder = holderIn(answer.arguments().value(0));
            refuse(asked, taken);
        });
}

void PlasmaHotKeys::set(const RegistrationRef& registration) {
    const QStringList identity{ourComponent, registration->name, QStringLiteral("Velloran"),
                               QStringLiteral("Start or stop clicking")};
    registration->isKnown = true;
    service_.tell({shortcutsPath, shortcutsInterface, QStringLiteral("doRegister"), {identity}});
    ask(registration, QStringLiteral("setShortcutKeys"),
        {identity, QVariant::fromValue(registration->wanted), asToldNow},
        [this](const RegistrationRef& asked, const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ReplyMessage) {
                take(asked, keySequencesIn(answer.arguments().value(0)));
            } else {
                refuse(asked, {hotKeyInvalidError, {}});
            }
        });
}

/// Somebody may have been quicker.
void PlasmaHotKeys::take(const RegistrationRef& registration, const KeySequenceList& bound) {
    if (bound != registration->wanted) {
        refuse(registration, {hotKeyExistsError, {}});
        return;
    }
    registration->isBound = true;
    registration->claim.answer({});
}

/// One that was granted once may be had again in another layout, or from the next that has the service.
void PlasmaHotKeys::refuse(const RegistrationRef& registration, const HotKeyAnswer& answer) {
    registration->claim.dropQuestion();
    release(*registration);
    if (!registration->claim.isAnswered()) {
        std::erase(registrations_, registration);
    }
    registration->claim.answer(answer);
}

void PlasmaHotKeys::ask(const RegistrationRef& registration, const QString& method, const QVariantList& arguments,
                        Answered answered) {
    service_.call(
        {shortcutsPath, shortcutsInterface, method, arguments}, this,
        [question = HotKeyQuestion(registration), answered = std::move(answered)](const QDBusMessage& answer) {
            if (const auto asked = question.stillAsked()) {
                answered(asked, answer);
            }
        });
}

void PlasmaHotKeys::release(Registration& registration) {
    registration.isBound = false;
    registration.key.forget();
    if (std::exchange(registration.isKnown, false)) {
        service_.tell(
            {shortcutsPath, shortcutsInterface, QStringLiteral("unregister"), {ourComponent, registration.name}});
    }
}

void PlasmaHotKeys::end(const RegistrationRef& registration) {
    registration->claim.dropQuestion();
    if (std::erase(registrations_, registration) > 0) {
        release(*registration);
    }
}

PlasmaHotKeys::RegistrationRef PlasmaHotKeys::named(const QString& component, const QString& name) const {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(), [&](const auto& registration) {
        return component == ourComponent && registration->name == name && registration->isBound;
    });
    return found != registrations_.end() ? *found : nullptr;
}

void PlasmaHotKeys::pressed(const QDBusMessage& message) {
    const auto values = message.arguments();
    const auto registration = named(values.value(0).toString(), values.value(1).toString());
    // A held key is told of again and again.
    if (service_.isFrom(message) && registration && registration->key.press()) {
        const HotKeyEvent event = registration->claim.press();
        handlers_.notify(&event);
    }
}

void PlasmaHotKeys::released(const QDBusMessage& message) {
    const auto values = message.arguments();
    const auto registration = named(values.value(0).toString(), values.value(1).toString());
    if (service_.isFrom(message) && registration) {
        registration->key.release();
    }
}

/// The user chose another in Plasma's settings.
void PlasmaHotKeys::changed(const QDBusMessage& message) {
    const QStringList identity = message.arguments().value(0).toStringList();
    const auto registration = named(identity.value(0), identity.value(1));
    if (!service_.isFrom(message) || !registration) {
        return;
    }
    const KeySequenceList bound = keySequencesIn(message.arguments().value(1));
    HotKeyAnswer chosen;
    chosen.hasNoTrigger = bound.isEmpty();
    if (!bound.isEmpty() && bound != registration->wanted) {
        chosen.otherTrigger = QKeySequence(bound.first().key).toString().toStdString();
    }
    registration->claim.answer(chosen);
}

} // namespace velloran::platform::plasma
