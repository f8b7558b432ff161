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
    while (!registrations_.empty()) {
        unregisterHotKey(registrations_.begin()->first);
    }
}

HotKeys::Reference X11HotKeys::installHandler(Handler handler) {
    const Reference reference = ++lastReference_;
    handlers_.emplace(reference, std::move(handler));
    return reference;
}

void X11HotKeys::removeHandler(Reference handler) {
    handlers_.erase(handler);
}

Status X11HotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id, Reference& hotKey) {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    const auto key = evdevCode ? keyboard_.keyCode(*evdevCode) : std::nullopt;
    // Without the extension a held key cannot be told from one that is pressed again and again.
    if (!key || !keyboard_.isPresent()) {
        return hotKeyInvalidError;
    }
    const std::uint16_t state = bits_.stateOf(modifiers);
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& entry) {
        return entry.second.key == *key && bits_.stateOf(entry.second.modifiers) == state;
    });
    if (isOwn) {
        return hotKeyExistsError;
    }
    Registration registration{id, modifiers, *key, bits_.withLocks(state)};
    const GrabResult result = grabKey(connection_.get(), *key, registration.grabbedStates);
    connection_.settle();
    if (result != GrabResult::grabbed) {
        return statusOf(result);
    }
    // Whoever has just recorded a shortcut still holds its keys: their repeats are no press.
    if (keyboard_.keysDown()[*key]) {
        holdUntilReleased(*key);
    }
    hotKey = ++lastReference_;
    registrations_.emplace(hotKey, std::move(registration));
    return noErr;
}

void X11HotKeys::unregisterHotKey(Reference hotKey) {
    const auto found = registrations_.find(hotKey);
    if (found == registrations_.end()) {
        return;
    }
    ungrabKey(connection_.get(), found->second.key, found->second.grabbedStates);
    registrations_.erase(found);
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
    const auto pressed = std::find_if(registrations_.begin(), registrations_.end(), [&](const auto& entry) {
        return entry.second.key == event.detail && bits_.stateOf(entry.second.modifiers) == state;
    });
    if (pressed != registrations_.end()) {
        holdUntilReleased(event.detail);
        callHandlers(pressed->second.id);
    }
}

void X11HotKeys::callHandlers(HotKeyId id) {
    // A handler may install and remove handlers and hot keys.
    const HotKeyEvent event{id};
    const std::map<Reference, Handler> handlers = handlers_;
    for (const auto& [reference, handler] : handlers) {
        if (handlers_.contains(reference)) {
            handler(&event);
        }
    }
}

void X11HotKeys::followMapping() {
    isFollowingRequested_ = false;
    bits_ = readModifierBits(connection_.get());
    for (auto& [reference, registration] : registrations_) {
        grabAgain(registration);
    }
    connection_.settle();
}

void X11HotKeys::grabAgain(Registration& registration) {
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
