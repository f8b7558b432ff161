#pragma once

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "keys/CurrentLayout.h"
#include "platform/HeldKey.h"
#include "platform/HotKeyClaim.h"
#include "platform/HotKeys.h"
#include "platform/sway/SwayConnection.h"
#include "platform/sway/UserConfiguration.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velloran::platform::sway {

/// Hot keys as bindings of sway that do nothing but tell of themselves. They are by physical key and swallow it; a
/// reload of the configuration drops them, and they are added again. Without `--locked` they rest while the screen is
/// locked. A combination that this program holds already counts as taken.
///
/// sway would bind over what the user has bound without a word. So the user's files are read first, also after a
/// reload, and what they bind is taken. A binding belongs to one mode: ours to the one that is no mode of the user's,
/// as the others are there to have keys of their own.
///
/// Where a connection breaks while sway lives, hot keys are taken back, and bound again once there is a new one.
class SwayHotKeys final : public HotKeys {
public:
    /// `socket` is where sway takes commands. Where nobody does, every registration is refused; where it has no time
    /// just then, they wait until it has. By `layout` it is known
    /// which keys the user has bound; without one it is the system's default.
    SwayHotKeys(EventLoop& loop, const std::string& socket, keys::CurrentLayout layout);
    /// Has the bindings removed, and waits for that a quarter of a second at most.
    ~SwayHotKeys() override;

    /// Whether sway is there, even if it takes no commands at the moment.
    [[nodiscard]] bool isFound() const { return isFound_; }

    /// Whether it takes commands.
    [[nodiscard]] bool isConnected() const;

    Subscription installHandler(Handler handler) override;
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private:
    struct Registration {
        Registration(EventLoop& loop, HotKeyId id, AnswerReceiver answered)
            : claim(id, std::move(answered)), key(loop) {}

        HotKeyClaim claim;
        /// As sway writes it.
        std::string combination;
        /// What its press and its release tell.
        std::string pressed;
        std::string released;
        std::uint32_t evdevCode = 0;
        std::uint32_t modifiers = 0;
        bool isBound = false;
        /// Was bound when the connection was lost.
        bool isLeftBehind = false;
        HeldKey key;
    };

    using RegistrationRef = std::shared_ptr<Registration>;
    using Answered = std::function<void(const Message&)>;

    void check(const RegistrationRef& registration);
    void decide(const RegistrationRef& registration, const std::vector<UserBinding>& bindings);
    void bind(const RegistrationRef& registration);
    void giveUp(const RegistrationRef& registration);
    void unbind(const RegistrationRef& registration);
    void refuse(const RegistrationRef& registration, Status status);
    void ask(MessageType type, const std::string& words, Answered answered);
    void run(const std::string& command, Answered answered);
    void end(const RegistrationRef& registration);

    void onAnswer(const Message& message);
    void onEvent(const Message& message);
    void onBinding(const std::string& command);
    void onReload();
    bool open();
    void connect();
    void disconnect();
    void retry();
    void onLost();

    EventLoop& loop_;
    const std::string socket_;
    const keys::CurrentLayout layout_;
    UserConfiguration configuration_;
    Observers<const HotKeyEvent*> handlers_;
    std::vector<RegistrationRef> registrations_;
    /// Have been given up, and may be bound still: sway has not said that they are not.
    std::vector<RegistrationRef> leftBehind_;
    std::uint64_t lastNumber_ = 0;
    /// Who gets the answers to the commands that are under way, in order.
    std::deque<Answered> waiting_;
    /// Events may come between the answers to questions, so they have a connection of their own.
    std::unique_ptr<SwayConnection> events_;
    std::unique_ptr<SwayConnection> commands_;
    bool isFound_ = false;
    ScheduledCall retry_;
};

} // namespace velloran::platform::sway
