#include "platform/sway/SwayHotKeys.h"

#include "keys/KeyCodes.h"
#include "platform/sway/combination.h"
#include "platform/sway/isTaken.h"
#include "platform/sway/reply.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace velloran::platform::sway {

namespace {

/// How long a sway that takes no commands is left alone.
constexpr std::uint64_t retryInterval = nanosecondsPerSecond;

constexpr auto whileLost = "sway takes no commands at the moment, and the hotkey is one of its bindings.";

} // namespace

SwayHotKeys::SwayHotKeys(EventLoop& loop, const std::string& socket, keys::CurrentLayout layout)
    : loop_(loop), socket_(socket), layout_(std::move(layout)), configuration_(loop) {
    connect();
    // A connection that cannot be had now is tried again only where somebody is known to listen.
    isFound_ = isConnected() || errno == EAGAIN;
    if (isFound_ && !isConnected()) {
        retry();
    }
}

SwayHotKeys::~SwayHotKeys() {
    for (const auto& registration : registrations_) {
        giveUp(registration);
    }
    if (!isConnected() && !leftBehind_.empty()) {
        // What is bound still would swallow its key for good. There is no time left to look whose it is.
        disconnect();
        open();
        for (const auto& registration : leftBehind_) {
            unbind(registration);
        }
    }
    events_.reset();
    if (commands_) {
        commands_->finish();
    }
}

/// Both connections or none; then `errno` says why.
bool SwayHotKeys::open() {
    events_ = SwayConnection::open(
        loop_, socket_, [this](const Message& message) { onEvent(message); }, [this] { onLost(); });
    commands_ = events_
                    ? SwayConnection::open(
                          loop_, socket_, [this](const Message& message) { onAnswer(message); }, [this] { onLost(); })
                    : nullptr;
    if (!commands_) {
        const int trouble = errno;
        events_.reset();
        errno = trouble;
    }
    return commands_ != nullptr;
}

void SwayHotKeys::connect() {
    if (!open()) {
        return;
    }
    events_->send({MessageType::subscribe, R"(["binding", "workspace"])"});
    // What was given up first: somebody may have asked for the same again.
    auto all = leftBehind_;
    all.insert(all.end(), registrations_.begin(), registrations_.end());
    for (const auto& registration : all) {
        registration->isBound = std::exchange(registration->isLeftBehind, false);
        check(registration);
    }
}

void SwayHotKeys::disconnect() {
    events_.reset();
    commands_.reset();
    waiting_.clear();
    for (const auto& registration : registrations_) {
        // An answer that is still read from the disk decides nothing any more.
        registration->claim.dropQuestion();
        registration->key.forget();
        registration->isLeftBehind = registration->isLeftBehind || registration->isBound;
        registration->isBound = false;
    }
}

void SwayHotKeys::retry() {
    retry_ = ScheduledCall(loop_, loop_.callAfter(retryInterval, [this] {
        connect();
        if (!commands_) {
            retry();
        }
    }));
}

bool SwayHotKeys::isConnected() const {
    return events_ && commands_ && !events_->isLost() && !commands_->isLost();
}

Subscription SwayHotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription SwayHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                         AnswerReceiver answered) {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    if (!evdevCode || !isFound_) {
        answered({hotKeyInvalidError, {}});
        return {};
    }
    const auto registration = std::make_shared<Registration>(loop_, id, std::move(answered));
    registration->combination = combinationText(modifiers, *evdevCode);
    registration->evdevCode = *evdevCode;
    registration->modifiers = keymapModifiers(modifiers);
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(),
                                   [&](const auto& other) { return other->combination == registration->combination; });
    if (isOwn) {
        registration->claim.answer({hotKeyExistsError, {}});
        return {};
    }
    // By the process: what an earlier one has bound is there until the next reload if that was killed.
    const std::string name = "nop velloran " + std::to_string(getpid()) + ' ' + std::to_string(++lastNumber_);
    registration->pressed = name + " pressed";
    registration->released = name + " released";
    registrations_.push_back(registration);
    if (isConnected()) {
        check(registration);
    }
    return registeredUntil(registration, [this](const auto& ending) { end(ending); });
}

void SwayHotKeys::check(const RegistrationRef& registration) {
    const HotKeyQuestion question(registration);
    const auto path = std::make_shared<std::string>();
    ask(MessageType::getVersion, {}, [path](const Message& message) {
        const auto version = parsed(message);
        *path = version ? textAt(*version, "loaded_config_file_name") : "";
    });
    ask(MessageType::getConfig, {}, [this, question, path](const Message& message) {
        if (question.stillAsked()) {
            const auto loaded = parsed(message);
            const std::string config = loaded ? textAt(*loaded, "config") : "";
            configuration_.read({*path, config}, [this, question](const std::vector<UserBinding>& bindings) {
                if (const auto checked = question.stillAsked()) {
                    decide(checked, bindings);
                }
            });
        }
    });
}

void SwayHotKeys::decide(const RegistrationRef& registration, const std::vector<UserBinding>& bindings) {
    const bool isUsers =
        isTaken(registration->evdevCode, registration->modifiers, bindings, layout_ ? layout_() : nullptr);
    const auto left = std::find(leftBehind_.begin(), leftBehind_.end(), registration);
    if (left != leftBehind_.end() && isUsers) {
        // By a reload since, which has dropped ours.
        leftBehind_.erase(left);
    } else if (left != leftBehind_.end()) {
        unbind(registration);
    } else if (isUsers) {
        registration->isBound = false;
        refuse(registration, hotKeyExistsError);
    } else {
        bind(registration);
    }
}

void SwayHotKeys::bind(const RegistrationRef& registration) {
    registration->isBound = true;
    // A held key repeats its binding, and not every version can be told otherwise. The release tells the next press
    // from a repetition.
    run("bindcode --no-warn " + registration->combination + ' ' + registration->pressed,
        [this, observed = std::weak_ptr(registration)](const Message& message) {
            const auto bound = observed.lock();
            if (bound && isSuccess(message)) {
                bound->claim.answer({noErr, {}});
            } else if (bound) {
                refuse(bound, hotKeyInvalidError);
            }
        });
    run("bindcode --no-warn --release " + registration->combination + ' ' + registration->released, {});
}

void SwayHotKeys::giveUp(const RegistrationRef& registration) {
    const bool isBound = std::exchange(registration->isBound, false);
    if (isBound || std::exchange(registration->isLeftBehind, false)) {
        leftBehind_.push_back(registration);
    }
    // What the user has bound meanwhile would go with it.
    if (isBound) {
        unbind(registration);
    }
}

void SwayHotKeys::unbind(const RegistrationRef& registration) {
    run("unbindcode " + registration->combination, {});
    run("unbindcode --release " + registration->combination,
        [this, registration](const Message&) { std::erase(leftBehind_, registration); });
}

void SwayHotKeys::refuse(const RegistrationRef& registration, Status status) {
    // One that was granted once may be given back by the next reload.
    if (!registration->claim.isAnswered()) {
        end(registration);
    }
    registration->claim.answer({status, {}});
}

void SwayHotKeys::ask(MessageType type, const std::string& words, Answered answered) {
    if (commands_) {
        waiting_.push_back(std::move(answered));
        commands_->send({type, words});
    }
}

void SwayHotKeys::run(const std::string& command, Answered answered) {
    ask(MessageType::runCommand, "mode \"default\" " + command, std::move(answered));
}

void SwayHotKeys::end(const RegistrationRef& registration) {
    if (std::erase(registrations_, registration) > 0) {
        giveUp(registration);
    }
}

void SwayHotKeys::onAnswer(const Message& message) {
    if (waiting_.empty()) {
        return;
    }
    const auto answered = std::move(waiting_.front());
    waiting_.pop_front();
    if (answered) {
        answered(message);
    }
}

void SwayHotKeys::onEvent(const Message& message) {
    const bool isOfInterest = message.type == MessageType::bindingEvent || message.type == MessageType::workspaceEvent;
    const auto event = isOfInterest ? parsed(message) : std::nullopt;
    if (event && message.type == MessageType::bindingEvent) {
        onBinding(textAt(*event, "binding", "command"));
    } else if (event && textAt(*event, "change") == "reload") {
        onReload();
    }
}

void SwayHotKeys::onBinding(const std::string& command) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(), [&](const auto& registration) {
        return registration->pressed == command || registration->released == command;
    });
    if (found == registrations_.end()) {
        return;
    }
    const auto registration = *found;
    if (registration->released == command) {
        registration->key.release();
        return;
    }
    if (registration->key.press()) {
        const HotKeyEvent event = registration->claim.press();
        handlers_.notify(&event);
    }
}

void SwayHotKeys::onReload() {
    leftBehind_.clear();
    const auto dropped = registrations_;
    for (const auto& registration : dropped) {
        registration->key.forget();
        registration->isBound = false;
        check(registration);
    }
}

void SwayHotKeys::onLost() {
    disconnect();
    retry();
    const auto lost = registrations_;
    for (const auto& registration : lost) {
        registration->claim.lose({.status = hotKeyInvalidError, .otherTrigger = {}, .reason = whileLost});
    }
}

} // namespace velloran::platform::sway
