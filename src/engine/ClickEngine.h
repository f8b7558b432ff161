#pragma once

#include "model/MouseButton.h"
#include "platform/PointerEvents.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace velloran {

/// Posts single clicks where the pointer is. Used on one thread at a time, but for what says otherwise. Runs are
/// numbered from 1, later ones higher.
class ClickEngine {
public:
    enum class Button { left, right, middle };

    /// Without `events` there is nothing to click with, and a click is nothing.
    explicit ClickEngine(std::shared_ptr<platform::PointerEvents> events) : events_(std::move(events)) {}

    ClickEngine(const ClickEngine&) = delete;
    ClickEngine& operator=(const ClickEngine&) = delete;

    /// Posts a press and a release of the button, sent together, without moving the pointer. A half that cannot be made
    /// is left out; nothing is reported. No click of a run that has been stopped, where clicks may have piled up.
    void post(Button button, std::uint64_t run) const;

    /// The runs up to this number are stopped. From any thread; a click that is under way goes on to its end.
    void stopRuns(std::uint64_t upTo) { stoppedUpTo_.store(upTo, std::memory_order_relaxed); }

private:
    const std::shared_ptr<platform::PointerEvents> events_;
    std::atomic<std::uint64_t> stoppedUpTo_ = 0;
};

/// The engine's button for a configured one.
ClickEngine::Button engineButton(MouseButton button);

} // namespace velloran
