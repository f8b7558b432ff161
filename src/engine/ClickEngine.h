#pragma once

#include "model/MouseButton.h"
#include "platform/PointerEvents.h"

#include <atomic>
#include <memory>
#include <utility>

namespace velloran {

/// Posts single clicks where the pointer is. Used on one thread at a time, but for what says otherwise.
class ClickEngine {
public:
    enum class Button { left, right, middle };

    /// Without `events` there is nothing to click with, and a click is nothing.
    explicit ClickEngine(std::shared_ptr<platform::PointerEvents> events) : events_(std::move(events)) {}

    ClickEngine(const ClickEngine&) = delete;
    ClickEngine& operator=(const ClickEngine&) = delete;

    /// Posts a press and a release of the button, sent together, without moving the pointer. A half that cannot be made
    /// is left out; nothing is reported.
    void post(Button button) const;

    /// One click more has been handed over to be posted, or one less is left. From any thread.
    void noteHandedOver() { ++clicksUnderWay_; }

    void notePosted() { --clicksUnderWay_; }

    /// Whether another click would pile up behind one that a slow desktop has yet to take. From any thread.
    [[nodiscard]] bool isBehind() const;

private:
    const std::shared_ptr<platform::PointerEvents> events_;
    std::atomic<int> clicksUnderWay_ = 0;
};

/// The engine's button for a configured one.
ClickEngine::Button engineButton(MouseButton button);

} // namespace velloran
