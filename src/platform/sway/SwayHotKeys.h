#pragma once

#include "async/EventLoop.h"
#include "async/Observers.h"
#include "platform/HotKeys.h"
#include "platform/sway/SwayConnection.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velloran::platform::sway {

/// Hot keys as bindings of sway that do nothing but tell of themselves. They are by physical key and swallow it; a
/// reload of the configuration drops them, and they are added again. Without `--locked` they rest while the screen is
/// locked. A combination that this program holds already counts as taken.
///
/// sway binds over what the user has bound without a word, and gives that back when ours ends.
class SwayHotKeys final : public HotKeys {
public:
    /// `socket` is where sway takes commands. Where nobody does, every registration is refused.
    SwayHotKeys(EventLoop& loop, const std::string& socket);
    /// Has the bindings removed, and waits for that a quarter of a second at most.
    ~SwayHotKeys() override;

    Subscription installHandler(Handler handler) override;
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private:
    struct Registration {
        HotKeyId id;
        AnswerReceiver answered;
        /// As sway writes it.
        std::string combination;
        /// What its press and its release tell.
        std::string pressed;
        std::string released;
        bool isAnswered = false;
        Status status = noErr;
        bool isDown = false;
        ScheduledCall forgetting;
    };

    void bind(const std::shared_ptr<Registration>& registration);
    void unbind(const Registration& registration);
    void run(const std::string& command, std::function<void(bool)> done);
    void answer(Registration& registration, Status status);
    void end(const std::shared_ptr<Registration>& registration);

    void onAnswer(const Message& message);
    void onEvent(const Message& message);
    void onBinding(const std::string& command);
    void onReload();
    void onLost();

    EventLoop& loop_;
    Observers<const HotKeyEvent*> handlers_;
    std::vector<std::shared_ptr<Registration>> registrations_;
    std::uint64_t lastNumber_ = 0;
    /// Who gets the answers to the commands that are under way, in order.
    std::deque<std::function<void(bool)>> waiting_;
    /// Events may come between the answers to questions, so they have a connection of their own.
    std::unique_ptr<SwayConnection> events_;
    std::unique_ptr<SwayConnection> commands_;
};

} // namespace velloran::platform::sway
