#pragma once

#include "async/ConnectionLoss.h"
#include "platform/InputTrust.h"
#include "platform/x11/X11PointerEvents.h"

#include <memory>
#include <utility>

namespace velloran::platform::x11 {

/// X11 has no permission to ask for: input may be posted whenever the server takes it.
class X11InputTrust final : public InputTrust {
public:
    X11InputTrust(std::shared_ptr<const X11PointerEvents> events, const ConnectionLoss& loss)
        : events_(std::move(events)), loss_(loss) {}

    bool isTrusted() override { return events_->canPost() && !loss_.isLost(); }

    bool requestPrompt(PromptReason /*reason*/) override { return isTrusted(); }

    /// The answer changes only when the server goes, which ends the program.
    void onChanged(std::function<void()> /*changed*/) override {}

private:
    const std::shared_ptr<const X11PointerEvents> events_;
    const ConnectionLoss& loss_;
};

} // namespace velloran::platform::x11
