#include "platform/x11/X11HotKeys.h"

#include "keys/KeyCodes.h"
#include "platform/x11/keyGrabs.h"

#include <algorithm>
#include <utility>

namespace velloran::platform::x11 {

namespace {

/// Short enough that nobody presses a key twice within it.
constexpr std::uint64_t heldKeyCheckInterval = nanosecondsPerSecond / 20;

Status statusOf(GrabResult result) {
    switch (result) {
    case GrabResult::grabbed:
        return noErr;
    case GrabResult::taken:
        return hotKeyExistsError;
    case GrabResult::refused:
        break;
    }
    return hotKeyInvalidError;
}

} // namespace

X11HotKeys::X11HotKeys(MainConnection& connection, X11Keyboard& keyboard)
    : connection_(connection), keyboard_(keyboard), bits_(readModifierBits(connection.get())) {
    connection_.setReceiver([this](const xcb_generic_event_t& event) { onEvent(event); });
    connection_.settle();
}

X11HotKeys::~X11HotKeys() {
    connection_.setReceiver({});
    for (const auto& registration : registrations_) {
        ungrabKey(connection_.get(), registration->key, registration->grabbedStates);
    }
    connection_.settle();
}

Subscription X11HotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription X11HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                        AnswerReceiver answered) {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    const auto key = evdevCode ? keyboard_.keyCode(*evdevCode) : std::nullopt;
    // Without the extension a held key cannot be told from one that is pressed again and again.
    if (!key || !keyboard_.isPresent()) {
        answered({hotKeyInvalidError, {}});
        return {};
    }
    const auto registration = std::make_shared<Registration>();
    registration->id = id;
    registration->answered = std::move(answered);
    registration->modifiers = modifiers;
    registration->key = *key;
    const Status status = grabFirst(*registration);
    Subscription result;
    if (status == noErr) {
        registrations_.push_back(registration);
        result = Subscription([this, observed = std::weak_ptr(registration)] {
            if (const auto ending = observed.lock()) {
                unregister(ending);
            }
        });
    }
    registration->answered({status, {}});
    return result;
}

Status X11HotKeys::grabFirst(Registration& registration) {
    const std::uint16_t state = bits_.stateOf(registration.modifiers);
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& other) {
        return other->key == registration.key && bits_.stateOf(other->modifiers) == state;
    });
    if (isOwn) {
        return hotKeyExistsError;
    }
    registration.grabbedStates = bits_.withLocks(state);
    const GrabResult result = grabKey(connection_.get(), registration.key, registration.grabbedStates);
    connection_.settle();
    // Whoever has just recorded a shortcut still holds its keys: their repeats are no press.
    if (result == GrabResult::grabbed && keyboard_.keysDown()[registration.key]) {
        holdUntilReleased(registration.key);
    }
    return statusOf(result);
}

void X11HotKeys::unregister(const std::shared_ptr<Registration>& registration) {
    ungrabKey(connection_.get(), registration->key, registration->grabbedStates);
    std::erase(registrations_, registration);
    connection_.settle();
}

void X11HotKeys::onEvent(const xcb_generic_event_t& event) {
    if (keyboard_.isMappingChange(event)) {
        // Changes come in bursts, and one look at the result is enough.
        if (!isFollowingRequested_) {
            isFollowingRequested_ = true;
            following_ = ScheduledCall(connection_.loop(), connection_.loop().post([this] { followMapping(); }));
        }
        return;
    }
    switch (eventKind(event)) {
    case XCB_KEY_PRESS:
        onKeyPress(reinterpret_cast<const xcb_key_press_event_t&>(event));
        break;
    case XCB_KEY_RELEASE:
        heldKeys_.erase(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
        break;
    default:
        break;
    }
}

void X11HotKeys::onKeyPress(const xcb_key_press_event_t& event) {
    if (heldKeys_.contains(event.detail)) {
        return;
    }
    const std::uint16_t state = bits_.relevant(event.state);
    // While a grabbed key is down every other key comes here as well.
    const auto pressed = std::find_if(registrations_.begin(), registrations_.end(), [&](const auto& registration) {
        return registration->key == event.detail && bits_.stateOf(registration->modifiers) == state;
    });
    if (pressed != registrations_.end()) {
        holdUntilReleased(event.detail);
        const HotKeyEvent hotKeyEvent{(*pressed)->id};
        handlers_.notify(&hotKeyEvent);
    }
}

void X11HotKeys::followMapping() {
    isFollowingRequested_ = false;
    bits_ = readModifierBits(connection_.get());
    std::vector<std::weak_ptr<Registration>> changed;
    for (const auto& registration : registrations_) {
        const Status status = grabAgain(*registration);
        if (std::exchange(registration->status, status) != status) {
            changed.emplace_back(registration);
        }
    }
    connection_.settle();
    for (const auto& observed : changed) {
        if (const auto registration = observed.lock()) {
            registration->answered({registration->status, {}});
        }
    }
}

Status X11HotKeys::grabAgain(Registration& registration) {
    const std::vector<std::uint16_t> wanted = bits_.withLocks(bits_.stateOf(registration.modifiers));
    // The new states come before the old ones go: those that stay are held all the time, and no press is missed.
    const GrabResult result = grabKey(connection_.get(), registration.key, wanted);
    std::vector<std::uint16_t> leftOver = std::exchange(registration.grabbedStates, wanted);
    if (result == GrabResult::grabbed) {
        std::erase_if(leftOver, [&](std::uint16_t state) {
            return std::find(wanted.begin(), wanted.end(), state) != wanted.end();
        });
    } else {
        registration.grabbedStates.clear();
    }
    ungrabKey(connection_.get(), registration.key, leftOver);
    return statusOf(result);
}

void X11HotKeys::holdUntilReleased(xcb_keycode_t key) {
    heldKeys_[key] = ++lastPress_;
    checking_ = ScheduledCall(connection_.loop(),
                              connection_.loop().callAfter(heldKeyCheckInterval, [this] { checkHeldKeys(); }));
}

void X11HotKeys::checkHeldKeys() {
    // A release goes elsewhere when the press was not ours, when another grab ended first, or when the server switched
    // away from this screen. A key that counted as held for ever would be dead.
    if (heldKeys_.empty()) {
        return;
    }
    const std::uint64_t lastPressBefore = lastPress_;
    const X11Keyboard::Keys down = keyboard_.keysDown();
    // The last repeats may have come along with the answer. They are handed on before this.
    releasing_ = ScheduledCall(connection_.loop(), connection_.loop().post([this, down, lastPressBefore] {
        std::erase_if(heldKeys_, [&](const auto& held) { return held.second <= lastPressBefore && !down[held.first]; });
    }));
    checking_ = ScheduledCall(connection_.loop(),
                              connection_.loop().callAfter(heldKeyCheckInterval, [this] { checkHeldKeys(); }));
}

} // namespace velloran::platform::x11
