#include "platform/TrustWhileUnlocked.h"

#include <utility>

namespace velloran::platform {

TrustWhileUnlocked::TrustWhileUnlocked(std::shared_ptr<InputTrust> trust,
                                       std::shared_ptr<const Published<bool>> isLocked)
    : trust_(std::move(trust)), isLocked_(std::move(isLocked)) {}

TrustWhileUnlocked::~TrustWhileUnlocked() {
    trust_->onChanged({});
}

bool TrustWhileUnlocked::isTrusted() {
    return !isLocked_->get() && trust_->isTrusted();
}

bool TrustWhileUnlocked::requestPrompt(PromptReason reason) {
    return trust_->requestPrompt(reason) && !isLocked_->get();
}

void TrustWhileUnlocked::onChanged(std::function<void()> changed) {
    lock_ = {};
    if (changed) {
        // The first is the value of the moment, which is no change.
        lock_ = isLocked_->stream().subscribe([changed, isFirst = true](const bool&) mutable {
            if (!std::exchange(isFirst, false)) {
                changed();
            }
        });
    }
    trust_->onChanged(std::move(changed));
}

} // namespace velloran::platform
