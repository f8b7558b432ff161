#include "platform/HotKeyClaim.h"

#include <utility>

namespace velloran::platform {

HotKeyClaim::HotKeyClaim(HotKeyId id, HotKeys::AnswerReceiver receiver) : id_(id), receiver_(std::move(receiver)) {}

void HotKeyClaim::answer(const HotKeyAnswer& answer) {
    if (last_ == answer) {
        return;
    }
    // With copies: neither need be there any more when whoever is told has ended this.
    const auto tell = [receiver = receiver_, answer] { receiver(answer); };
    last_ = answer;
    tell();
}

void HotKeyClaim::lose(const HotKeyAnswer& answer) {
    if (isAnswered()) {
        this->answer(answer);
    }
}

} // namespace velloran::platform
