#pragma once

#include "async/Subscription.h"
#include "platform/HotKeys.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace velloran::platform {

/// What a backend keeps of one registration whatever its desktop: whose it is, what was told of it last, and which
/// question about it is the last one. Main thread.
class HotKeyClaim {
public:
    /// The number of a question; none has 0.
    using Question = std::uint64_t;

    /// `receiver` is who registered it.
    HotKeyClaim(HotKeyId id, HotKeys::AnswerReceiver receiver);
    HotKeyClaim(const HotKeyClaim&) = delete;
    HotKeyClaim& operator=(const HotKeyClaim&) = delete;

    /// What is told of a press.
    [[nodiscard]] HotKeyEvent press() const { return {id_}; }

    /// Whether anything was told yet: the first answer decides, and changes follow only a success.
    [[nodiscard]] bool isAnswered() const { return last_.has_value(); }

    /// Tells what became of it, unless just that was told last. Whoever is told may end the registration, and this.
    void answer(const HotKeyAnswer& answer);

    /// The desktop does not have it any more, but may have it again. Who was told nothing yet goes on waiting.
    void lose(const HotKeyAnswer& answer = {hotKeyInvalidError, {}});

    /// The desktop is asked something; what it was asked before is of no interest any more.
    Question ask() { return ++lastQuestion_; }

    /// Whatever it is still asked is of no interest any more.
    void dropQuestion() { ++lastQuestion_; }

    [[nodiscard]] bool isLast(Question question) const { return question == lastQuestion_; }

private:
    const HotKeyId id_;
    const HotKeys::AnswerReceiver receiver_;
    std::optional<HotKeyAnswer> last_;
    Question lastQuestion_ = 0;
};

/// A question that a desktop is asked about a registration, something with a `claim`. It keeps nothing alive. An answer
/// that comes too late finds out by it.
template<typename Registration>
class HotKeyQuestion {
public:
    explicit HotKeyQuestion(const std::shared_ptr<Registration>& registration)
        : registration_(registration), number_(registration->claim.ask()) {}

    /// What it was asked about; null where that has gone, or another question was asked since.
    [[nodiscard]] std::shared_ptr<Registration> stillAsked() const {
        const auto asked = registration_.lock();
        return asked && asked->claim.isLast(number_) ? asked : nullptr;
    }

private:
    std::weak_ptr<Registration> registration_;
    HotKeyClaim::Question number_;
};

/// What a registration is held by: calls `end` with it at its end, if there is anything left to end.
template<typename Registration, typename End>
Subscription registeredUntil(const std::shared_ptr<Registration>& registration, End end) {
    return Subscription([observed = std::weak_ptr(registration), end] {
        if (const auto ending = observed.lock()) {
            end(ending);
        }
    });
}

} // namespace velloran::platform
