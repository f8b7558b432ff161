#pragma once

#include "async/Published.h"
#include "async/Subscription.h"
#include "platform/InputTrust.h"

#include <functional>
#include <memory>

namespace velloran::platform {

/// A permission that rests while the screen is locked: clicks would reach what locks it, and not what the user saw when
/// the run began. Nobody is asked for anything when it is unlocked again.
class TrustWhileUnlocked final : public InputTrust {
public:
    /// `isLocked` is told in turns of the main loop.
    TrustWhileUnlocked(std::shared_ptr<InputTrust> trust, std::shared_ptr<const Published<bool>> isLocked);
    ~TrustWhileUnlocked() override;

    bool isTrusted() override;
    bool requestPrompt(PromptReason reason) override;
    void onChanged(std::function<void()> changed) override;

private:
    const std::shared_ptr<InputTrust> trust_;
    const std::shared_ptr<const Published<bool>> isLocked_;
    Subscription lock_;
};

} // namespace velloran::platform
